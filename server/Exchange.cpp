#include "server/Exchange.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>
#include <strings.h>

namespace nimbrelle::server {

namespace {

// A refused body up to this long is read and dropped, so that the connection stays in use.
constexpr std::uint64_t maxDiscardedBody = 1 << 20;

using MhdResponse = std::unique_ptr<MHD_Response, decltype(&MHD_destroy_response)>;

// Several lines of one name are joined with a comma.
std::optional<std::string> headerOf(MHD_Connection *mhd, const char *name)
{
    struct Search {
        const char *name;
        std::optional<std::string> value;
    } search{.name = name, .value = std::nullopt};
    const auto collect = [](void *context, MHD_ValueKind, const char *key, const char *value) {
        auto &found = *static_cast<Search *>(context);
        if (::strcasecmp(key, found.name) == 0)
            found.value = (found.value ? *found.value + ',' : std::string()) + (value ? value : "");
        return MHD_YES;
    };
    MHD_get_connection_values(mhd, MHD_HEADER_KIND, collect, &search);
    return search.value;
}

std::optional<std::uint64_t> parsedLength(const std::optional<std::string> &text)
{
    std::uint64_t length = 0;
    if (!text || std::from_chars(text->data(), text->data() + text->size(), length).ec != std::errc())
        return std::nullopt;
    return length;
}

std::string utcTimeText()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text.data();
}

MhdResponse documentResponse(const std::shared_ptr<const Document> &document)
{
    auto *owner = new std::shared_ptr<const Document>(document);
    const auto release = [](void *context) {
        delete static_cast<std::shared_ptr<const Document> *>(context);
    };
    auto *bytes = const_cast<char *>(document->body.data()); // only read
    MHD_Response *response =
        MHD_create_response_from_buffer_with_free_callback_cls(document->body.size(), bytes, release, owner);
    if (!response)
        release(owner);
    return {response, &MHD_destroy_response};
}

MhdResponse textResponse(const std::string &text)
{
    std::string line = text.empty() ? text : text + '\n';
    return {MHD_create_response_from_buffer(line.size(), line.data(), MHD_RESPMEM_MUST_COPY),
        &MHD_destroy_response};
}

void addHeaders(MHD_Response *mhdResponse, const Response &response)
{
    const auto add = [&](const char *name, const std::string &value) {
        MHD_add_response_header(mhdResponse, name, value.c_str());
    };
    add("Cache-Control", "private, no-cache");
    if (response.version)
        add("ETag", entityTag(*response.version));
    if (response.document)
        add("Content-Type", "application/json");
    else if (!response.text.empty())
        add("Content-Type", "text/plain; charset=utf-8");
    if (!response.allow.empty())
        add("Allow", response.allow);
    if (response.status == 401)
        add("WWW-Authenticate", "Bearer realm=\"nimbrelle\"");
    if (response.status == 503)
        add("Retry-After", "30");
}

// Methods are short and known, or not worth a line of their own.
std::string shownMethod(const std::string &method)
{
    constexpr std::array<std::string_view, 7> known{
        "GET", "HEAD", "PUT", "POST", "DELETE", "OPTIONS", "PATCH"};
    return std::ranges::find(known, method) != known.end() ? method : "(other)";
}

} // namespace

Exchange::Exchange(HttpServer &server, HttpServer::Connection &connection, MHD_Connection *mhd,
    std::string method, std::string path)
    : m_server(server)
    , m_connection(connection)
    , m_mhd(mhd)
    , m_method(std::move(method))
    , m_path(std::move(path))
{
    m_server.beginRequest();
    m_server.m_watchdog.enter(m_connection.entry, ConnectionWatchdog::Phase::inExchange);
}

Exchange::~Exchange()
{
    count();
    log();
    m_server.m_watchdog.enter(m_connection.entry, ConnectionWatchdog::Phase::awaitsHead);
    m_server.endRequest();
}

RequestHead Exchange::head() const
{
    return {.method = m_method,
        .path = m_path,
        .authorization = headerOf(m_mhd, "Authorization"),
        .ifMatch = headerOf(m_mhd, "If-Match"),
        .ifNoneMatch = headerOf(m_mhd, "If-None-Match"),
        .contentLength = parsedLength(headerOf(m_mhd, "Content-Length"))};
}

MHD_Result Exchange::begin()
{
    const RequestHead request = head();
    HeadResult result = m_server.m_api.handleHead(request);
    m_notebookName = result.notebookName;
    if (auto *write = std::get_if<PendingWrite>(&result.next)) {
        m_write = std::move(*write);
        m_body.emplace(m_server.m_budget, m_server.m_limits.maxBody, request.contentLength);
        return MHD_YES;
    }
    m_response = std::get<Response>(std::move(result.next));
    if (!refusesBody(request)) {
        // Who has nothing to write gets no more time for a body than for a head: else a few bytes that never
        // come, and no token, would hold a connection.
        if (request.contentLength.value_or(0) > 0 || headerOf(m_mhd, "Transfer-Encoding"))
            m_server.m_watchdog.returnToHead(m_connection.entry);
        return MHD_YES;
    }
    m_connection.close = ConnectionWatchdog::Close::lingering;
    return send(m_response);
}

// Whether the response goes out before the body came; the connection then closes. Who asked whether to go on
// gets told at once.
bool Exchange::refusesBody(const RequestHead &request) const
{
    const std::uint64_t length = request.contentLength.value_or(0);
    return length > maxDiscardedBody || (length > 0 && headerOf(m_mhd, "Expect").has_value());
}

void Exchange::receive(std::string_view piece)
{
    m_received += piece.size();
    if (!m_write)
        return;
    const auto outcome = m_body->append(piece);
    if (outcome == RequestBody::Outcome::kept)
        return;
    // A response can't be given in the middle of a body: the rest is dropped, within its time.
    m_write.reset();
    if (outcome == RequestBody::Outcome::tooLong)
        m_response = {.status = 413, .text = "The body is too long."};
    else
        m_response = {.status = 503, .text = "Too much is under way; try again later."};
}

MHD_Result Exchange::respond()
{
    if (m_write)
        m_response = m_server.m_api.handleBody(*m_write, m_body->take());
    else
        m_server.m_watchdog.enter(m_connection.entry, ConnectionWatchdog::Phase::inExchange);
    return send(m_response);
}

MHD_Result Exchange::send(const Response &response)
{
    const auto &document = response.document;
    const MhdResponse mhdResponse = document ? documentResponse(document) : textResponse(response.text);
    if (!mhdResponse)
        return MHD_NO;
    addHeaders(mhdResponse.get(), response);
    m_status = response.status;
    m_sent = document && m_method != "HEAD" ? document->body.size() : 0;
    return MHD_queue_response(m_mhd, response.status, mhdResponse.get());
}

void Exchange::count() const
{
    m_server.m_metrics.count({.kind = Metrics::kindOf(m_method, m_path),
        .status = m_aborted ? 0 : m_status,
        .received = m_received,
        .sent = m_aborted ? 0 : m_sent,
        .took = ConnectionWatchdog::Clock::now() - m_start,
        .storeFailed = m_response.storeFailed});
}

void Exchange::log() const
{
    using std::chrono::milliseconds;
    if (!m_server.m_log.eachRequest && m_response.errorDetail.empty())
        return;
    const auto *address = MHD_get_connection_info(m_mhd, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    const auto took = std::chrono::duration_cast<milliseconds>(ConnectionWatchdog::Clock::now() - m_start);
    std::string line = utcTimeText() + ' ' + (address ? addressText(address->client_addr) : "-") + ' '
        + (m_notebookName.empty() ? "-" : m_notebookName) + ' ' + shownMethod(m_method) + ' '
        + (SyncApi::knowsPath(m_path) ? m_path : "(other)") + ' '
        + (m_status > 0 ? std::to_string(m_status) : "-") + " in=" + std::to_string(m_received)
        + " out=" + (m_aborted ? "-" : std::to_string(m_sent)) + ' ' + std::to_string(took.count()) + "ms";
    if (m_aborted)
        line += " broken off";
    if (!m_response.errorDetail.empty())
        line += ": " + m_response.errorDetail;
    m_server.m_log.write(line);
}

} // namespace nimbrelle::server
