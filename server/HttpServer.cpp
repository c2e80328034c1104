#include "server/HttpServer.h"

#include "server/Exchange.h"
#include "server/Failure.h"

#include <array>
#include <csignal>
#include <microhttpd.h>

namespace nimbrelle::server {

namespace {

constexpr const char *tlsPriorities = "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2:%SERVER_PRECEDENCE";
constexpr std::intptr_t connectionMemory = 48L * 1024;

MHD_OptionItem number(MHD_OPTION option, std::intptr_t value)
{
    return {.option = option, .value = value, .ptr_value = nullptr};
}

MHD_OptionItem text(MHD_OPTION option, const char *value)
{
    return {.option = option, .value = 0, .ptr_value = const_cast<char *>(value)}; // only read
}

MHD_OptionItem callback(MHD_OPTION option, auto *function, void *context)
{
    return {.option = option, .value = reinterpret_cast<std::intptr_t>(function), .ptr_value = context};
}

} // namespace

/// What the server library calls; its signatures, and contexts that are our objects. No exception may pass
/// through it.
struct HttpCallbacks {
    // Only asks: a connection that is let in may still come to nothing, and then isn't counted.
    static MHD_Result admit(void *context, const sockaddr *address, socklen_t)
    {
        auto &server = *static_cast<HttpServer *>(context);
        if (server.m_peers.hasRoom(peerOf(address)))
            return MHD_YES;
        server.m_metrics.connectionRefused();
        return MHD_NO;
    }

    static void connection(
        void *context, MHD_Connection *mhd, void **state, MHD_ConnectionNotificationCode code)
    {
        auto &server = *static_cast<HttpServer *>(context);
        if (code == MHD_CONNECTION_NOTIFY_STARTED) {
            *state = server.opened(mhd).release();
            return;
        }
        const std::unique_ptr<HttpServer::Connection> closed(static_cast<HttpServer::Connection *>(*state));
        *state = nullptr;
        if (closed)
            server.closed(*closed);
    }

    static MHD_Result request(void *context, MHD_Connection *mhd, const char *url, const char *method,
        const char *, const char *bytes, std::size_t *count, void **state)
    {
        try {
            if (!*state) {
                const auto *info = MHD_get_connection_info(mhd, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
                auto &connection = *static_cast<HttpServer::Connection *>(info->socket_context);
                auto *exchange =
                    new Exchange(*static_cast<HttpServer *>(context), connection, mhd, method, url);
                *state = exchange;
                return exchange->begin();
            }
            auto &exchange = *static_cast<Exchange *>(*state);
            if (*count == 0)
                return exchange.respond();
            exchange.receive({bytes, *count});
            *count = 0;
            return MHD_YES;
        } catch (const std::exception &) {
            return MHD_NO; // out of memory: the connection closes, and nothing was stored
        }
    }

    static void completed(void *, MHD_Connection *, void **state, MHD_RequestTerminationCode code)
    {
        const std::unique_ptr<Exchange> exchange(static_cast<Exchange *>(*state));
        *state = nullptr;
        if (exchange && code != MHD_REQUEST_TERMINATED_COMPLETED_OK)
            exchange->markAborted();
    }
};

HttpServer::HttpServer(std::unique_ptr<ListeningSocket> socket, const Identity &identity, Store &store,
    const ServerLimits &limits, Log log)
    : m_socket(std::move(socket))
    , m_limits(limits)
    , m_log(std::move(log))
    , m_budget(limits.maxHeld)
    , m_api(store, m_budget, limits.maxBody)
    , m_watchdog(
          {.headTime = limits.headTimeout, .bodyTime = limits.bodyTimeout, .capacity = limits.maxConnections})
    , m_peers(limits.maxPerAddress)
{
    std::signal(SIGPIPE, SIG_IGN); // a peer that is gone is an error of the write, not our end
    startDaemon(identity);
}

void HttpServer::startDaemon(const Identity &identity)
{
    unsigned flags = MHD_USE_EPOLL_INTERNAL_THREAD | MHD_USE_ITC | MHD_USE_TLS;
    if (m_socket->isIPv6())
        flags |= MHD_USE_DUAL_STACK;
    const unsigned threads = std::min(m_limits.threads, m_limits.maxConnections);
    const std::array options{
        number(MHD_OPTION_LISTEN_SOCKET, m_socket->descriptor()),
        text(MHD_OPTION_HTTPS_MEM_KEY, identity.key.c_str()),
        text(MHD_OPTION_HTTPS_MEM_CERT, identity.certificate.c_str()),
        text(MHD_OPTION_HTTPS_PRIORITIES, tlsPriorities),
        number(MHD_OPTION_THREAD_POOL_SIZE, threads),
        number(MHD_OPTION_CONNECTION_LIMIT, m_limits.maxConnections),
        number(MHD_OPTION_CONNECTION_MEMORY_LIMIT, connectionMemory),
        callback(MHD_OPTION_NOTIFY_CONNECTION, &HttpCallbacks::connection, this),
        callback(MHD_OPTION_NOTIFY_COMPLETED, &HttpCallbacks::completed, this),
        number(MHD_OPTION_END, 0),
    };
    m_daemon = MHD_start_daemon(flags, 0, &HttpCallbacks::admit, this, &HttpCallbacks::request, this,
        MHD_OPTION_ARRAY, options.data(), MHD_OPTION_END);
    if (!m_daemon)
        throw Failure("the server cannot start; check the key, the certificate and the limit on open files");
}

HttpServer::~HttpServer()
{
    stop(std::chrono::milliseconds(0));
}

void HttpServer::stop(std::chrono::milliseconds grace)
{
    if (!m_daemon)
        return;
    MHD_quiesce_daemon(m_daemon);
    {
        std::unique_lock lock(m_mutex);
        m_idle.wait_for(lock, grace, [this] { return m_activeRequests == 0; });
    }
    MHD_stop_daemon(m_daemon);
    m_daemon = nullptr;
}

std::unique_ptr<HttpServer::Connection> HttpServer::opened(MHD_Connection *mhd)
{
    // Newer versions of the library answer both questions in the same place.
    const int socket = MHD_get_connection_info(mhd, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
    const auto *address = MHD_get_connection_info(mhd, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    auto connection = std::make_unique<Connection>();
    connection->peer = peerOf(address->client_addr);
    m_peers.add(connection->peer);
    m_metrics.connectionOpened();
    connection->entry = m_watchdog.add(socket);
    return connection;
}

void HttpServer::closed(const Connection &connection)
{
    m_peers.remove(connection.peer);
    m_metrics.connectionClosed();
    m_watchdog.remove(connection.entry, connection.close);
}

void HttpServer::beginRequest()
{
    const std::lock_guard lock(m_mutex);
    ++m_activeRequests;
}

void HttpServer::endRequest()
{
    const std::lock_guard lock(m_mutex);
    --m_activeRequests;
    m_idle.notify_all();
}

} // namespace nimbrelle::server
