#pragma once

#include "server/HttpServer.h"
#include "server/support/TlsClient.h"

#include <filesystem>

namespace nimbrelle::server {

/// A folder for one test, gone afterwards.
class ScratchFolder {
public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;
    ~ScratchFolder();
    const std::filesystem::path &path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// A document of so many words; `mark` tells it from others, and `padding` bytes make it longer.
std::string documentOf(int words, const std::string &mark = "a", std::size_t padding = 0);

/// The server in this process, on a free port, with the notebook "first" whose token is `token`.
class Stage {
public:
    explicit Stage(const ServerLimits &limits = {});

    static inline const std::string token = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFG";

    std::uint16_t port() const { return m_server->port(); }
    Store &store() { return *m_store; }
    HttpServer &server() { return *m_server; }
    std::string log();

    /// Each over a connection of its own.
    Reply get(const std::string &more = {});
    Reply put(const std::string &condition, const std::string &body);
    Reply request(const std::string &text, const std::string &from = "127.0.0.1");

private:
    ScratchFolder m_folder;
    std::unique_ptr<Store> m_store;
    std::mutex m_logMutex;
    std::string m_log;
    std::unique_ptr<HttpServer> m_server;
};

} // namespace nimbrelle::server
