#include "server/support/ServerProgram.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace nimbrelle::server {

namespace {

std::array<int, 2> newPipe()
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    return ends;
}

bool readSome(int file, std::string &into)
{
    std::array<char, 4096> piece{};
    const ssize_t count = ::read(file, piece.data(), piece.size());
    if (count > 0)
        into.append(piece.data(), static_cast<std::size_t>(count));
    return count > 0;
}

} // namespace

ServerProgram::Child ServerProgram::start(
    const std::filesystem::path &data, const std::vector<std::string> &arguments)
{
    const auto out = newPipe();
    const auto errors = newPipe();
    std::vector<std::string> words{NIMBRELLE_SERVER_PROGRAM, "--data", data.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char *> pointers;
    for (std::string &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
    Child child{-1, out[0], errors[0]};
    const int code = ::posix_spawn(&child.process, pointers[0], &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(out[1]);
    ::close(errors[1]);
    if (code != 0)
        throw std::runtime_error("cannot start " + words[0]);
    return child;
}

ServerProgram::Outcome ServerProgram::finish(Child &child)
{
    Outcome outcome;
    std::array watched{pollfd{child.out, POLLIN, 0}, pollfd{child.errors, POLLIN, 0}};
    while (watched[0].fd >= 0 || watched[1].fd >= 0) {
        ::poll(watched.data(), watched.size(), -1);
        if (watched[0].revents != 0 && !readSome(child.out, outcome.out))
            watched[0].fd = -1;
        if (watched[1].revents != 0 && !readSome(child.errors, outcome.errors))
            watched[1].fd = -1;
    }
    int status = 0;
    ::waitpid(child.process, &status, 0);
    ::close(child.out);
    ::close(child.errors);
    child.process = -1;
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

ServerProgram::Outcome ServerProgram::run(
    const std::filesystem::path &data, const std::vector<std::string> &arguments)
{
    Child child = start(data, arguments);
    return finish(child);
}

ServerProgram::ServerProgram(const std::filesystem::path &data, const std::vector<std::string> &options)
{
    std::vector<std::string> arguments{"serve", "--bind", "127.0.0.1", "--port", "0"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    m_child = start(data, arguments);
    constexpr std::string_view before = " port ";
    std::string said;
    while (said.find('\n') == std::string::npos && readSome(m_child.errors, said)) { }
    const auto at = said.find(before);
    if (at == std::string::npos)
        throw std::runtime_error("the server did not start: " + said);
    m_port = static_cast<std::uint16_t>(std::stoul(said.substr(at + before.size())));
}

ServerProgram::~ServerProgram()
{
    if (m_child.process > 0)
        end(SIGKILL);
}

ServerProgram::Outcome ServerProgram::end(int signal)
{
    ::kill(m_child.process, signal);
    return finish(m_child);
}

} // namespace nimbrelle::server
