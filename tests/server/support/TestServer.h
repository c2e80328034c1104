#pragma once

#include "server/HttpServer.h"
#include "server/support/TlsClient.h"

#include <filesystem>

namespace nimbrelle::server {

/// Gone with this object.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory &) = delete;
    TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;
    ~TemporaryDirectory();
    const std::filesystem::path &path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// A document of so many words; `label` tells it from others, and `padding` bytes make it longer.
std::string documentOf(int words, const std::string &label = "a", std::size_t padding = 0);

/// Waits until it is so, for half a minute at most; false when it never was.
bool eventually(const std::function<bool()> &isSo);

/// The server in this process, on a free port, with the notebook "first" whose token is `token`.
class TestServer {
public:
    explicit TestServer(const ServerLimits &limits = {});

    static inline const std::string token = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFG";

    std::uint16_t port() const { return m_http->port(); }
    Store &store() { return *m_store; }
    HttpServer &http() { return *m_http; }
    std::string log();
    /// From now on the store fails.
    void breakStore();

    /// For /v1/bundle, with the token.
    static std::string bundleRequest(
        const char *method, const std::string &headers = {}, std::string_view body = {});

    /// Each over a connection of its own.
    Reply get(const std::string &headers = {});
    Reply put(const std::string &ifMatch, const std::string &body);
    Reply request(const std::string &text, const std::string &from = "127.0.0.1");

private:
    TemporaryDirectory m_directory;
    std::unique_ptr<Store> m_store;
    std::mutex m_logMutex;
    std::string m_log;
    std::unique_ptr<HttpServer> m_http;
};

} // namespace nimbrelle::server
