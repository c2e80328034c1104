#include "server/support/PostgresServer.h"

#include "server/PostgresConnection.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <pwd.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace nimbrelle::server {

namespace {

using Arguments = std::vector<std::string>;

// It refuses to run as root.
constexpr const char *plainUser = "nobody";
constexpr int mostAtOnce = 6; // databases that one test uses

pid_t started(Arguments command)
{
    // Gone with us, however we end.
    Arguments wrapped{"setpriv", "--pdeathsig", "KILL"};
    if (::geteuid() == 0)
        wrapped.insert(wrapped.end(), {"--reuid", plainUser, "--regid", "nogroup", "--clear-groups"});
    wrapped.push_back("--");
    command.insert(command.begin(), wrapped.begin(), wrapped.end());
    std::vector<char *> pointers;
    for (std::string &argument : command)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    const int code = ::posix_spawnp(&process, pointers[0], &actions, nullptr, pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (code != 0)
        throw std::runtime_error("cannot start " + command[0]);
    return process;
}

struct ProcessState {
    bool runs = false;
    pid_t parent = 0;
};

ProcessState stateOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const auto name = text.rfind(") "); // behind which the state and then the parent stand
    if (name == std::string::npos)
        return {};
    return {.runs = text[name + 2] != 'Z', .parent = std::atoi(text.c_str() + name + 4)};
}

} // namespace

std::filesystem::path PostgresServer::program(const std::string &name)
{
    std::filesystem::path found;
    for (const auto &version : std::filesystem::directory_iterator("/usr/lib/postgresql"))
        found = std::max(found, version.path() / "bin" / name);
    return found;
}

PostgresServer::PostgresServer()
{
    if (::geteuid() == 0) {
        const passwd *user = ::getpwnam(plainUser);
        if (::chown(folder().c_str(), user->pw_uid, user->pw_gid) != 0)
            throw std::runtime_error("cannot give a folder away");
    }
    const pid_t maker = started({program("initdb"), "-D", folder() / "data", "-U", "nimbrelle", "-A", "trust",
        "-E", "UTF8", "--locale=C.UTF-8", "--no-sync"});
    ::waitpid(maker, nullptr, 0);
    start();
}

PostgresServer &PostgresServer::shared()
{
    static PostgresServer server;
    return server;
}

std::string PostgresServer::url(const std::string &database) const
{
    return "postgresql://nimbrelle@/" + database + "?host=" + folder().string();
}

std::string PostgresServer::newDatabase()
{
    const std::string name = "test" + std::to_string(++m_databases);
    PostgresConnection connection(url("postgres"), std::chrono::minutes(1));
    // After a kill each file of all databases is flushed, so those of earlier tests go.
    connection.run("DROP DATABASE IF EXISTS test" + std::to_string(std::max(0, m_databases - mostAtOnce))
        + " WITH (FORCE)");
    connection.run("CREATE DATABASE " + name);
    return url(name);
}

void PostgresServer::start()
{
    m_process =
        started({program("postgres"), "-D", folder() / "data", "-k", folder(), "-c", "listen_addresses="});
    const auto answers = [&] {
        ::usleep(5'000); // each question costs it a process
        return PQping(url("postgres").c_str()) == PQPING_OK;
    };
    if (!eventually(answers))
        throw std::runtime_error("PostgreSQL does not start");
}

std::vector<pid_t> PostgresServer::processes() const
{
    std::vector<pid_t> found;
    if (m_process > 0)
        found.push_back(m_process);
    for (const auto &process : std::filesystem::directory_iterator("/proc")) {
        const pid_t id = std::atoi(process.path().filename().c_str()); // 0: something else
        if (m_process > 0 && id > 0 && stateOf(id).parent == m_process)
            found.push_back(id);
    }
    return found;
}

void PostgresServer::kill()
{
    if (m_process < 0)
        return;
    ::kill(m_process, SIGSTOP); // so that no process is added
    const auto all = processes();
    for (const pid_t process : all)
        ::kill(process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    m_process = -1;
    for (const pid_t process : all)
        eventually([&] { return !stateOf(process).runs; });
}

void PostgresServer::killOneBackend(const std::string &url)
{
    PostgresConnection connection(url, std::chrono::minutes(1));
    const auto found = connection.run(PostgresStatement{.name = "backend",
        .sql = "SELECT pid::bigint FROM pg_stat_activity WHERE datname = current_database() AND "
               "pid <> pg_backend_pid() LIMIT 1"});
    if (found.rows() > 0)
        ::kill(static_cast<pid_t>(found.number(0, 0)), SIGKILL);
}

void PostgresServer::freeze(bool frozen)
{
    for (const pid_t process : processes())
        ::kill(process, frozen ? SIGSTOP : SIGCONT);
}

} // namespace nimbrelle::server
