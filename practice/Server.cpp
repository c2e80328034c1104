#include "practice/Server.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <microhttpd.h>
#include <mutex>

namespace nimbrelle::practice {

/// A wait that the server's end cuts short.
class Pause {
public:
    /// False when the server is ending.
    bool wait(std::chrono::milliseconds time)
    {
        std::unique_lock lock(m_mutex);
        return !m_ended.wait_for(lock, time, [this] { return m_isEnding; });
    }
    void end()
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        m_ended.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_ended;
    bool m_isEnding = false;
};

struct Server::State {
    State(const Lexicon &words, ServerOptions chosen) : lexicon(words), options(chosen) { }

    const Lexicon &lexicon;
    ServerOptions options;
    Pause pause;
    MHD_Daemon *daemon = nullptr;

    static MHD_Result receive(void *self, MHD_Connection *connection, const char *url, const char *method,
        const char *version, const char *data, size_t *dataSize, void **exchange);
    MHD_Result respond(MHD_Connection *connection, const Request &request);
};

/// A reply on its way out.
struct Outgoing {
    Reply reply;
    Pause &pause;
    std::chrono::milliseconds delay;
    size_t part = 0;
    size_t offset = 0;
    size_t sent = 0;
    size_t end = 0; ///< bytes after which a reply that breaks off does so
};

namespace {

size_t lengthOf(const Reply &reply)
{
    size_t length = 0;
    for (const std::string &part : reply.parts)
        length += part.size();
    return length;
}

ssize_t send(void *opaque, uint64_t, char *buffer, size_t capacity)
{
    auto &out = *static_cast<Outgoing *>(opaque);
    if (out.part == out.reply.parts.size())
        return MHD_CONTENT_READER_END_OF_STREAM;
    if (out.sent >= out.end)
        return MHD_CONTENT_READER_END_WITH_ERROR;
    const bool waits = out.offset == 0 && out.part > 0;
    if (waits && !out.pause.wait(out.delay))
        return MHD_CONTENT_READER_END_WITH_ERROR;
    const std::string &part = out.reply.parts[out.part];
    const size_t count = std::min({capacity, part.size() - out.offset, out.end - out.sent});
    std::copy_n(part.data() + out.offset, count, buffer);
    out.offset += count;
    out.sent += count;
    if (out.offset == part.size()) {
        ++out.part;
        out.offset = 0;
    }
    return static_cast<ssize_t>(count);
}

void forget(void *opaque)
{
    delete static_cast<Outgoing *>(opaque);
}

} // namespace

MHD_Result Server::State::respond(MHD_Connection *connection, const Request &request)
{
    Reply reply = replyTo(request, lexicon, options.failure);
    if (reply.waitsFirst && !pause.wait(options.slowness))
        return MHD_NO;
    const unsigned status = reply.status;
    const size_t length = lengthOf(reply);
    const uint64_t size = reply.stream ? MHD_SIZE_UNKNOWN : length;
    const size_t end = reply.breaksOff ? length / 2 : length;
    const std::string type = reply.contentType;
    const std::string allow = reply.allow;
    auto *out = new Outgoing{.reply = std::move(reply), .pause = pause, .delay = options.delay, .end = end};
    constexpr size_t blockSize = size_t{16} * 1024;
    MHD_Response *response = MHD_create_response_from_callback(size, blockSize, send, out, forget);
    if (!response) {
        delete out;
        return MHD_NO;
    }
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, type.c_str());
    if (!allow.empty())
        MHD_add_response_header(response, MHD_HTTP_HEADER_ALLOW, allow.c_str());
    const MHD_Result result = MHD_queue_response(connection, status, response);
    MHD_destroy_response(response);
    return result;
}

namespace {

Request *newRequest(MHD_Connection *connection, const char *method, const char *url)
{
    const char *authorization =
        MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_AUTHORIZATION);
    return new Request{.method = method, .path = url, .authorization = authorization ? authorization : ""};
}

} // namespace

MHD_Result Server::State::receive(void *self, MHD_Connection *connection, const char *url, const char *method,
    const char *, const char *data, size_t *dataSize, void **exchange)
{
    if (!*exchange) {
        *exchange = newRequest(connection, method, url);
        return MHD_YES;
    }
    auto &request = *static_cast<Request *>(*exchange);
    if (*dataSize == 0)
        return static_cast<State *>(self)->respond(connection, request);
    // The rest of a body that is too large is read and dropped, so that the client gets to see the answer.
    request.bodyTooLarge = request.bodyTooLarge || request.body.size() + *dataSize > largestBody;
    if (request.bodyTooLarge)
        request.body.clear();
    else
        request.body.append(data, *dataSize);
    *dataSize = 0;
    return MHD_YES;
}

namespace {

void finish(void *, MHD_Connection *, void **exchange, MHD_RequestTerminationCode)
{
    delete static_cast<Request *>(*exchange);
    *exchange = nullptr;
}

sockaddr_in loopback(uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

Server::Server(const Lexicon &lexicon, ServerOptions options)
    : m_state(std::make_unique<State>(lexicon, options))
{
    constexpr unsigned flags = MHD_USE_AUTO | MHD_USE_INTERNAL_POLLING_THREAD | MHD_USE_THREAD_PER_CONNECTION;
    constexpr unsigned idleSeconds = 60;
    constexpr unsigned mostConnections = 64;
    const sockaddr_in address = loopback(options.port);
    errno = 0;
    m_state->daemon = MHD_start_daemon(flags, options.port, nullptr, nullptr, &State::receive, m_state.get(),
        MHD_OPTION_SOCK_ADDR, reinterpret_cast<const sockaddr *>(&address), MHD_OPTION_NOTIFY_COMPLETED,
        finish, nullptr, MHD_OPTION_CONNECTION_TIMEOUT, idleSeconds, MHD_OPTION_CONNECTION_LIMIT,
        mostConnections, MHD_OPTION_END);
    if (!m_state->daemon)
        throw ServerError(
            "cannot listen on 127.0.0.1:" + std::to_string(options.port) + ": " + std::strerror(errno));
}

Server::~Server()
{
    m_state->pause.end();
    MHD_stop_daemon(m_state->daemon);
}

uint16_t Server::port() const
{
    return MHD_get_daemon_info(m_state->daemon, MHD_DAEMON_INFO_BIND_PORT)->port;
}

} // namespace nimbrelle::practice
