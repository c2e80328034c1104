#include "server/MonitoringServer.h"

#include "server/Failure.h"

#include <microhttpd.h>

namespace nimbrelle::server {

namespace {

constexpr unsigned idleSeconds = 10;

} // namespace

/// What the server library calls. No exception may pass through it.
struct MonitoringCallbacks {
    static MHD_Result request(void *context, MHD_Connection *mhd, const char *url, const char *method,
        const char *, const char *, std::size_t *count, void **state)
    {
        static int begun = 0;
        if (!*state) {
            *state = &begun;
            return MHD_YES;
        }
        if (*count > 0) {
            *count = 0;
            return MHD_YES;
        }
        try {
            return send(mhd, static_cast<MonitoringServer *>(context)->answer(method, url));
        } catch (const std::exception &) {
            return MHD_NO;
        }
    }

    static MHD_Result send(MHD_Connection *mhd, const MonitoringServer::Answer &answer)
    {
        auto *bytes = const_cast<char *>(answer.text.data()); // only read
        MHD_Response *response =
            MHD_create_response_from_buffer(answer.text.size(), bytes, MHD_RESPMEM_MUST_COPY);
        if (!response)
            return MHD_NO;
        MHD_add_response_header(response, "Content-Type", "text/plain; version=0.0.4; charset=utf-8");
        const MHD_Result result = MHD_queue_response(mhd, answer.status, response);
        MHD_destroy_response(response);
        return result;
    }
};

MonitoringServer::MonitoringServer(
    std::unique_ptr<ListeningSocket> socket, const HttpServer &server, Store &store)
    : m_socket(std::move(socket)), m_server(server), m_store(store)
{
    // A thread for each, as the store may keep one waiting.
    unsigned flags = MHD_USE_POLL_INTERNAL_THREAD | MHD_USE_THREAD_PER_CONNECTION | MHD_USE_ITC;
    if (m_socket->isIPv6())
        flags |= MHD_USE_DUAL_STACK;
    m_daemon = MHD_start_daemon(flags, 0, nullptr, nullptr, &MonitoringCallbacks::request, this,
        MHD_OPTION_LISTEN_SOCKET, m_socket->descriptor(), MHD_OPTION_CONNECTION_LIMIT, maxConnections,
        MHD_OPTION_CONNECTION_TIMEOUT, idleSeconds, MHD_OPTION_END);
    if (!m_daemon)
        throw Failure("the port for metrics cannot be served; check the limit on open files");
}

MonitoringServer::~MonitoringServer()
{
    MHD_quiesce_daemon(m_daemon); // else it would close the socket, which is ours to close
    MHD_stop_daemon(m_daemon);
}

MonitoringServer::Answer MonitoringServer::answer(std::string_view method, std::string_view path)
{
    if (path != "/healthz" && path != "/metrics")
        return {.status = 404, .text = "The paths are /healthz and /metrics.\n"};
    if (method != "GET" && method != "HEAD")
        return {.status = 405, .text = "Only GET has a meaning here.\n"};
    if (path == "/healthz")
        return health();
    return {.text = m_server.metrics().text(m_server.heldBytes())};
}

// Whoever runs this learns more from the log; here only whether the store can be read.
MonitoringServer::Answer MonitoringServer::health()
{
    if (!m_healthQuestions.try_acquire())
        return {.status = 503, .text = "The store does not answer.\n"};
    Answer answer{.text = "ok\n"};
    try {
        m_store.version(0);
    } catch (const std::exception &) {
        answer = {.status = 503, .text = "The store fails.\n"};
    }
    m_healthQuestions.release();
    return answer;
}

} // namespace nimbrelle::server
