#pragma once

#include "server/HttpServer.h"

#include <semaphore>

namespace nimbrelle::server {

/// Answers `GET /healthz` and `GET /metrics` without TLS on a port of its own, from construction to
/// destruction.
class MonitoringServer {
public:
    /// Throws Failure. Takes over the socket; server and store must outlive this.
    MonitoringServer(std::unique_ptr<ListeningSocket> socket, const HttpServer &server, Store &store);
    MonitoringServer(const MonitoringServer &) = delete;
    MonitoringServer &operator=(const MonitoringServer &) = delete;
    ~MonitoringServer();

    std::uint16_t port() const { return m_socket->port(); }

    /// Few ask here, and rarely.
    static constexpr unsigned maxConnections = 16;

private:
    friend struct MonitoringCallbacks;
    struct Answer {
        unsigned status = 200;
        std::string text;
    };

    Answer answer(std::string_view method, std::string_view path);
    Answer health();

    std::unique_ptr<ListeningSocket> m_socket;
    const HttpServer &m_server;
    Store &m_store;
    /// A store that is stuck must not take all connections, for what is counted can still be told.
    std::counting_semaphore<> m_healthQuestions{maxConnections / 2};
    MHD_Daemon *m_daemon = nullptr;
};

} // namespace nimbrelle::server
