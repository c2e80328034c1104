#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/types.h>

namespace nimbrelle::bench {

/// An nginx of one process on loopback that serves one file from a folder over TLS: the yardstick.
class Nginx {
public:
    static bool isInstalled();

    /// The folder holds server.key, server.crt and "bundle"; the configuration is written beside them.
    Nginx(const std::filesystem::path &folder, std::uint16_t port);
    Nginx(const Nginx &) = delete;
    Nginx &operator=(const Nginx &) = delete;
    ~Nginx();

    std::uint16_t port() const { return m_port; }
    pid_t process() const { return m_process; }

private:
    std::uint16_t m_port;
    pid_t m_process = -1;
};

} // namespace nimbrelle::bench
