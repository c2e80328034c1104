#pragma once

#include "server/support/TestServer.h"

namespace nimbrelle::server {

/// PostgreSQL in a folder of its own, on a Unix socket only, as a user without rights.
class PostgresServer {
public:
    PostgresServer();
    PostgresServer(const PostgresServer &) = delete;
    PostgresServer &operator=(const PostgresServer &) = delete;
    ~PostgresServer() { kill(); }

    /// One for all tests of a run, as making one takes a while. It runs.
    static PostgresServer &shared();

    /// An empty database of its own for a test; postgresql://…
    std::string newDatabase();

    /// Waits until it answers.
    void start();
    /// All of its processes at once, as a loss of power does.
    void kill();
    /// Kills the process that serves one of the connections to this database; the others end along with it.
    void killOneBackend(const std::string &url);
    /// Holds its processes up, or lets them go on.
    void freeze(bool frozen);

    const std::filesystem::path &folder() const { return m_directory.path(); }
    static std::filesystem::path program(const std::string &name);

private:
    std::vector<pid_t> processes() const;
    std::string url(const std::string &database) const;

    TemporaryDirectory m_directory;
    pid_t m_process = -1;
    int m_databases = 0;
};

} // namespace nimbrelle::server
