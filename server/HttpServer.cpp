#include "server/HttpServer.h"

#include "server/Exchange.h"
#include "server/Failure.h"

#include <array>
#include <csignal>
#include <cstring>
#include <microhttpd.h>

namespace nimbrelle::server {

namespace {

constexpr const char *tlsPriorities = "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2:%SERVER_PRECEDENCE";
constexpr std::size_t connectionMemory = 48 * 1024;

std::chrono::sys_seconds systemNow()
{
    return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
}

} // namespace

/// What the server library calls; its signatures, our objects. No exception may pass through it.
struct HttpCallbacks {
    static void connection(
        void *context, MHD_Connection *wire, void **own, MHD_ConnectionNotificationCode code)
    {
        auto &server = *static_cast<HttpServer *>(context);
        if (code == MHD_CONNECTION_NOTIFY_STARTED) {
            const auto *socket = MHD_get_connection_info(wire, MHD_CONNECTION_INFO_CONNECTION_FD);
            auto *entry = server.m_watch.add(socket->connect_fd, server.m_limits.headTime);
            *own = new HttpServer::Connection{entry};
            return;
        }
        const std::unique_ptr<HttpServer::Connection> ended(static_cast<HttpServer::Connection *>(*own));
        *own = nullptr;
        if (ended)
            server.m_watch.remove(ended->entry, ended->ending);
    }

    static MHD_Result request(void *context, MHD_Connection *wire, const char *url, const char *method,
        const char *, const char *bytes, std::size_t *count, void **own)
    {
        try {
            if (!*own) {
                const auto *info = MHD_get_connection_info(wire, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
                auto &connection = *static_cast<HttpServer::Connection *>(info->socket_context);
                auto *exchange =
                    new Exchange(*static_cast<HttpServer *>(context), connection, wire, method, url);
                *own = exchange;
                return exchange->begin();
            }
            auto &exchange = *static_cast<Exchange *>(*own);
            if (*count == 0)
                return exchange.answer();
            exchange.receive({bytes, *count});
            *count = 0;
            return MHD_YES;
        } catch (const std::exception &) {
            return MHD_NO; // out of memory: the connection closes, and nothing was stored
        }
    }

    static void completed(void *, MHD_Connection *, void **own, MHD_RequestTerminationCode code)
    {
        const std::unique_ptr<Exchange> exchange(static_cast<Exchange *>(*own));
        *own = nullptr;
        if (exchange && code != MHD_REQUEST_TERMINATED_COMPLETED_OK)
            exchange->markCut();
    }
};

HttpServer::HttpServer(std::unique_ptr<ListeningSocket> socket, const Identity &identity, Store &store,
    const ServerLimits &limits, Log log, SyncApi::Now now)
    : m_socket(std::move(socket))
    , m_limits(limits)
    , m_log(std::move(log))
    , m_api(store, limits.maxBody, now ? std::move(now) : systemNow)
    , m_budget(limits.maxHeld)
{
    std::signal(SIGPIPE, SIG_IGN); // a peer that is gone is an error of the write, not our end
    startDaemon(identity);
}

void HttpServer::startDaemon(const Identity &identity)
{
    unsigned flags = MHD_USE_EPOLL_INTERNAL_THREAD | MHD_USE_ITC | MHD_USE_TLS;
    if (m_socket->isAddress6())
        flags |= MHD_USE_DUAL_STACK;
    const auto pointer = [](const std::string &text) { return const_cast<char *>(text.c_str()); };
    const auto function = [](auto *callback) { return reinterpret_cast<std::intptr_t>(callback); };
    const unsigned threads = std::min(m_limits.threads, m_limits.maxConnections);
    const std::array options{
        MHD_OptionItem{MHD_OPTION_LISTEN_SOCKET, m_socket->descriptor(), nullptr},
        MHD_OptionItem{MHD_OPTION_HTTPS_MEM_KEY, 0, pointer(identity.key)},
        MHD_OptionItem{MHD_OPTION_HTTPS_MEM_CERT, 0, pointer(identity.certificate)},
        MHD_OptionItem{MHD_OPTION_HTTPS_PRIORITIES, 0, const_cast<char *>(tlsPriorities)},
        MHD_OptionItem{MHD_OPTION_THREAD_POOL_SIZE, threads, nullptr},
        MHD_OptionItem{MHD_OPTION_CONNECTION_LIMIT, m_limits.maxConnections, nullptr},
        MHD_OptionItem{MHD_OPTION_PER_IP_CONNECTION_LIMIT, m_limits.maxPerAddress, nullptr},
        MHD_OptionItem{MHD_OPTION_CONNECTION_MEMORY_LIMIT, connectionMemory, nullptr},
        MHD_OptionItem{MHD_OPTION_NOTIFY_CONNECTION, function(&HttpCallbacks::connection), this},
        MHD_OptionItem{MHD_OPTION_NOTIFY_COMPLETED, function(&HttpCallbacks::completed), this},
        MHD_OptionItem{MHD_OPTION_END, 0, nullptr},
    };
    m_daemon = MHD_start_daemon(flags, 0, nullptr, nullptr, &HttpCallbacks::request, this, MHD_OPTION_ARRAY,
        options.data(), MHD_OPTION_END);
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
        std::unique_lock held(m_mutex);
        m_idle.wait_for(held, grace, [this] { return m_underWay == 0; });
    }
    MHD_stop_daemon(m_daemon);
    m_daemon = nullptr;
}

void HttpServer::exchangeBegins()
{
    const std::lock_guard held(m_mutex);
    ++m_underWay;
}

void HttpServer::exchangeEnds()
{
    const std::lock_guard held(m_mutex);
    --m_underWay;
    m_idle.notify_all();
}

} // namespace nimbrelle::server
