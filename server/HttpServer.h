#pragma once

#include "server/ConnectionWatchdog.h"
#include "server/Identity.h"
#include "server/ListeningSocket.h"
#include "server/Metrics.h"
#include "server/PeerConnections.h"
#include "server/RequestBody.h"
#include "server/SyncApi.h"

#include <chrono>
#include <condition_variable>
#include <functional>

struct MHD_Connection;
struct MHD_Daemon;

namespace nimbrelle::server {

struct ServerLimits {
    std::uint64_t maxBody = 64ULL << 20; ///< bytes
    std::uint64_t maxHeld = 256ULL << 20; ///< bytes of documents in memory, all connections together
    unsigned maxConnections = 512;
    unsigned maxPerAddress = 32; ///< or from one /64 network of IPv6
    std::chrono::milliseconds headTimeout{
        15'000}; ///< from connect, or the last answer, to the end of a head;
                 ///< less while more than half of the connections are taken
    std::chrono::milliseconds bodyTimeout{120'000}; ///< from there to the end of the answer
    unsigned threads = 4;
};

/// The sync protocol over TLS, from construction to destruction.
class HttpServer {
public:
    struct Log {
        /// One line, without its newline; from any thread.
        std::function<void(const std::string &line)> write;
        /// Else only requests that failed in the store.
        bool eachRequest = true;
    };

    /// Throws Failure. Takes over the socket; the store must outlive the server.
    HttpServer(std::unique_ptr<ListeningSocket> socket, const Identity &identity, Store &store,
        const ServerLimits &limits, Log log);
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;
    ~HttpServer();

    std::uint16_t port() const { return m_socket->port(); }

    /// Bytes of documents in memory now: received, kept ready, and being sent.
    std::uint64_t heldBytes() const { return m_budget.reserved(); }

    const Metrics &metrics() const { return m_metrics; }

    /// Takes no further connection and lets the requests that are under way finish, as long as `grace`
    /// allows.
    void stop(std::chrono::milliseconds grace);

private:
    friend class Exchange;
    friend struct HttpCallbacks;

    struct Connection {
        std::string peer;
        ConnectionWatchdog::Entry *entry = nullptr;
        ConnectionWatchdog::Close close = ConnectionWatchdog::Close::immediate;
    };

    void startDaemon(const Identity &identity);
    std::unique_ptr<Connection> opened(MHD_Connection *mhd);
    void closed(const Connection &connection);
    void beginRequest();
    void endRequest();

    std::unique_ptr<ListeningSocket> m_socket;
    const ServerLimits m_limits;
    const Log m_log;
    Metrics m_metrics;
    BodyBudget m_budget;
    SyncApi m_api;
    ConnectionWatchdog m_watchdog;
    PeerConnections m_peers;

    std::mutex m_mutex;
    std::condition_variable m_idle;
    unsigned m_activeRequests = 0;

    MHD_Daemon *m_daemon = nullptr;
};

} // namespace nimbrelle::server
