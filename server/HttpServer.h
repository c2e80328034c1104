#pragma once

#include "server/ConnectionWatch.h"
#include "server/HeldBody.h"
#include "server/Identity.h"
#include "server/ListeningSocket.h"
#include "server/SyncApi.h"

#include <chrono>
#include <condition_variable>
#include <functional>

struct MHD_Connection;
struct MHD_Daemon;

namespace nimbrelle::server {

struct ServerLimits {
    std::uint64_t maxBody = 64ULL << 20; ///< bytes
    std::uint64_t maxHeld = 256ULL << 20; ///< bytes of unfinished bodies, all connections together
    unsigned maxConnections = 512;
    unsigned maxPerAddress = 32;
    std::chrono::milliseconds headTime{15'000}; ///< from connect, or the last answer, to the end of a head
    std::chrono::milliseconds bodyTime{120'000}; ///< from there to the end of the answer
    unsigned threads = 4;
};

/// The sync protocol over TLS, from construction to destruction.
class HttpServer {
public:
    struct Log {
        /// One line, without its newline; from any thread.
        std::function<void(const std::string &line)> write;
        /// Else only requests that met with trouble in the store.
        bool eachRequest = true;
    };

    /// Throws Failure. Takes over the socket; the store must outlive the server.
    HttpServer(std::unique_ptr<ListeningSocket> socket, const Identity &identity, Store &store,
        const ServerLimits &limits, Log log, SyncApi::Now now = {});
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;
    ~HttpServer();

    std::uint16_t port() const { return m_socket->port(); }

    /// Bytes of unfinished bodies now.
    std::uint64_t heldBytes() const { return m_budget.taken(); }

    /// Takes no further connection and lets the requests that are under way finish, as long as `grace`
    /// allows.
    void stop(std::chrono::milliseconds grace);

private:
    friend class Exchange;
    friend struct HttpCallbacks;

    struct Connection {
        ConnectionWatch::Entry *entry = nullptr;
        ConnectionWatch::Ending ending = ConnectionWatch::Ending::plain;
    };

    void startDaemon(const Identity &identity);
    void exchangeBegins();
    void exchangeEnds();

    std::unique_ptr<ListeningSocket> m_socket;
    const ServerLimits m_limits;
    const Log m_log;
    SyncApi m_api;
    BodyBudget m_budget;
    ConnectionWatch m_watch;

    std::mutex m_mutex;
    std::condition_variable m_idle;
    unsigned m_underWay = 0;

    MHD_Daemon *m_daemon = nullptr;
};

} // namespace nimbrelle::server
