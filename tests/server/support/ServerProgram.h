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
    using Arguments = std::vector<std::string>;
    struct Outcome {
        int exitCode = -1; ///< -1 when a signal ended it
        std::string out;
        std::string errors;
    };

    /// Runs a command to its end.
    static Outcome run(const std::filesystem::path &data, const Arguments &arguments);

    /// Starts `serve` on a free port of loopback and waits until it listens.
    explicit ServerProgram(const std::filesystem::path &data, const Arguments &options = {});
    ServerProgram(const ServerProgram &) = delete;
    ServerProgram &operator=(const ServerProgram &) = delete;
    /// Kills it if it still runs.
    ~ServerProgram();

    std::uint16_t port() const { return m_port; }
    pid_t process() const { return m_process; }
    Outcome end(int signal);

private:
    ServerProgram() = default;
    void start(const std::filesystem::path &data, const Arguments &first, const Arguments &more = {});
    Outcome finish();

    pid_t m_process = -1;
    int m_out = -1;
    int m_errors = -1;
    std::uint16_t m_port = 0;
};

} // namespace nimbrelle::server
