#include "server/support/ServerProgram.h"

#include <csignal>
#include <spawn.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace nimbrelle::server {

namespace {

// The child writes into memory, so that no full pipe can hold it up.
std::string textIn(int file)
{
    struct stat status { };
    ::fstat(file, &status);
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    const ssize_t count = ::pread(file, text.data(), text.size(), 0);
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
}

} // namespace

void ServerProgram::start(const std::filesystem::path &data, const Arguments &first, const Arguments &more)
{
    Arguments command{NIMBRELLE_SERVER_PROGRAM, "--data", data.string()};
    command.insert(command.end(), first.begin(), first.end());
    command.insert(command.end(), more.begin(), more.end());
    std::vector<char *> pointers;
    for (std::string &argument : command)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    m_out = ::memfd_create("out", MFD_CLOEXEC);
    m_errors = ::memfd_create("errors", MFD_CLOEXEC);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, m_out, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, m_errors, STDERR_FILENO);
    const int code = ::posix_spawn(&m_process, pointers[0], &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (code != 0)
        throw std::runtime_error("cannot start " + command[0]);
}

ServerProgram::Outcome ServerProgram::finish()
{
    int status = 0;
    ::waitpid(m_process, &status, 0);
    m_process = -1;
    return {.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1,
        .out = textIn(m_out),
        .errors = textIn(m_errors)};
}

ServerProgram::Outcome ServerProgram::run(const std::filesystem::path &data, const Arguments &arguments)
{
    ServerProgram program;
    program.start(data, arguments);
    return program.finish();
}

ServerProgram::ServerProgram(const std::filesystem::path &data, const Arguments &options)
{
    start(data, {"serve", "--bind", "127.0.0.1", "--port", "0"}, options);
    std::string text;
    while (!(text = textIn(m_errors)).ends_with('\n') && ::waitpid(m_process, nullptr, WNOHANG) == 0)
        ::usleep(1000);
    constexpr std::string_view before = " port ";
    const auto at = text.find(before);
    if (at == std::string::npos)
        throw std::runtime_error("the server did not start: " + text);
    m_port = static_cast<std::uint16_t>(std::stoul(text.substr(at + before.size())));
}

ServerProgram::~ServerProgram()
{
    if (m_process > 0)
        end(SIGKILL);
    ::close(m_out);
    ::close(m_errors);
}

ServerProgram::Outcome ServerProgram::end(int signal)
{
    ::kill(m_process, signal);
    return finish();
}

} // namespace nimbrelle::server
