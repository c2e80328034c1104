#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace nimbrelle::server {

/// The real program as a child process.
class ServerProgram {
public:
    struct Outcome {
        int exitCode = -1; ///< -1 when a signal ended it
        std::string out;
        std::string errors;
    };

    /// Runs a command to its end.
    static Outcome run(const std::filesystem::path &data, const std::vector<std::string> &arguments);

    /// Starts `serve` on a free port of loopback and waits until it listens.
    explicit ServerProgram(const std::filesystem::path &data, const std::vector<std::string> &options = {});
    ServerProgram(const ServerProgram &) = delete;
    ServerProgram &operator=(const ServerProgram &) = delete;
    /// Kills it if it still runs.
    ~ServerProgram();

    std::uint16_t port() const { return m_port; }
    pid_t process() const { return m_child.process; }
    Outcome end(int signal);

private:
    struct Child {
        pid_t process = -1;
        int out = -1;
        int errors = -1;
    };
    static Child start(const std::filesystem::path &data, const std::vector<std::string> &arguments);
    static Outcome finish(Child &child);

    Child m_child;
    std::uint16_t m_port = 0;
};

} // namespace nimbrelle::server
