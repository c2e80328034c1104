#include "server/Exchange.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

namespace nimbrelle::server {

namespace {

// A refused body up to this long is read and dropped, so that the connection stays in use.
constexpr std::uint64_t mostDropped = 1 << 20;

using Response = std::unique_ptr<MHD_Response, decltype(&MHD_destroy_response)>;

std::optional<std::string> headerOf(MHD_Connection *wire, const char *name)
{
    struct Search {
        std::string_view name;
        std::optional<std::string> value;
    } search{name, std::nullopt};
    const auto collect = [](void *context, MHD_ValueKind, const char *key, const char *value) {
        auto &into = *static_cast<Search *>(context);
        const auto sameLetter = [](char a, char b) { return (a | 0x20) == (b | 0x20); };
        if (std::ranges::equal(std::string_view(key), into.name, sameLetter))
            into.value = (into.value ? *into.value + ',' : std::string()) + (value ? value : "");
        return MHD_YES;
    };
    MHD_get_connection_values(wire, MHD_HEADER_KIND, collect, &search);
    return search.value;
}

std::optional<std::uint64_t> parsedLength(const std::optional<std::string> &text)
{
    std::uint64_t length = 0;
    if (!text || std::from_chars(text->data(), text->data() + text->size(), length).ec != std::errc())
        return std::nullopt;
    return length;
}

std::string timeText()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text.data();
}

Response documentResponse(const std::shared_ptr<const Document> &document)
{
    auto *keeper = new std::shared_ptr<const Document>(document);
    const auto release = [](void *context) {
        delete static_cast<std::shared_ptr<const Document> *>(context);
    };
    auto *bytes = const_cast<char *>(document->body.data()); // only read
    MHD_Response *response =
        MHD_create_response_from_buffer_with_free_callback_cls(document->body.size(), bytes, release, keeper);
    if (!response)
        release(keeper);
    return {response, &MHD_destroy_response};
}

Response textResponse(const std::string &text)
{
    std::string line = text.empty() ? text : text + '\n';
    return {MHD_create_response_from_buffer(line.size(), line.data(), MHD_RESPMEM_MUST_COPY),
        &MHD_destroy_response};
}

void addHeaders(MHD_Response *response, const Answer &answer)
{
    const auto add = [&](const char *name, const std::string &value) {
        MHD_add_response_header(response, name, value.c_str());
    };
    add("Cache-Control", "private, no-cache");
    if (answer.version)
        add("ETag", entityTag(*answer.version));
    if (answer.document)
        add("Content-Type", "application/json");
    else if (!answer.text.empty())
        add("Content-Type", "text/plain; charset=utf-8");
    if (!answer.allow.empty())
        add("Allow", answer.allow);
    if (answer.status == 401)
        add("WWW-Authenticate", "Bearer realm=\"nimbrelle\"");
    if (answer.status == 503)
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

Exchange::Exchange(HttpServer &server, HttpServer::Connection &connection, MHD_Connection *wire,
    std::string method, std::string path)
    : m_server(server)
    , m_connection(connection)
    , m_wire(wire)
    , m_method(std::move(method))
    , m_path(std::move(path))
{
    m_server.exchangeBegins();
    m_server.m_watch.allow(m_connection.entry, m_server.m_limits.bodyTime);
}

Exchange::~Exchange()
{
    log();
    m_server.m_watch.allow(m_connection.entry, m_server.m_limits.headTime);
    m_server.exchangeEnds();
}

RequestHead Exchange::head() const
{
    return {m_method, m_path, headerOf(m_wire, "Authorization"), headerOf(m_wire, "If-Match"),
        headerOf(m_wire, "If-None-Match"), parsedLength(headerOf(m_wire, "Content-Length"))};
}

MHD_Result Exchange::begin()
{
    const RequestHead request = head();
    Admission admission = m_server.m_api.admit(request);
    m_notebookName = admission.notebookName;
    if (auto *write = std::get_if<AdmittedWrite>(&admission.next)) {
        m_write = std::move(*write);
        m_body.emplace(m_server.m_budget, m_server.m_limits.maxBody, request.contentLength);
        return MHD_YES;
    }
    m_answer = std::get<Answer>(std::move(admission.next));
    if (!refusesBody(request))
        return MHD_YES;
    m_connection.ending = ConnectionWatch::Ending::lingering;
    return send(m_answer);
}

// Whether the answer goes out before the body came; the connection then closes. Who asked whether to go on
// gets told at once.
bool Exchange::refusesBody(const RequestHead &request) const
{
    const std::uint64_t length = request.contentLength.value_or(0);
    return length > mostDropped || (length > 0 && headerOf(m_wire, "Expect").has_value());
}

void Exchange::receive(std::string_view piece)
{
    m_received += piece.size();
    if (!m_write)
        return;
    const auto outcome = m_body->append(piece);
    if (outcome == HeldBody::Outcome::kept)
        return;
    // An answer can't be given in the middle of a body: the rest is dropped, within its time.
    m_write.reset();
    if (outcome == HeldBody::Outcome::tooLong)
        m_answer = {.status = 413, .text = "The body is too long."};
    else
        m_answer = {.status = 503, .text = "Too much is being received; try again later."};
}

MHD_Result Exchange::answer()
{
    if (m_write)
        m_answer = m_server.m_api.finish(*m_write, m_body->take());
    return send(m_answer);
}

MHD_Result Exchange::send(const Answer &answer)
{
    const Response response = answer.document ? documentResponse(answer.document) : textResponse(answer.text);
    if (!response)
        return MHD_NO;
    addHeaders(response.get(), answer);
    m_status = answer.status;
    m_sent = answer.document && m_method != "HEAD" ? answer.document->body.size() : 0;
    return MHD_queue_response(m_wire, answer.status, response.get());
}

void Exchange::log() const
{
    using std::chrono::milliseconds;
    if (!m_server.m_log.eachRequest && m_answer.trouble.empty())
        return;
    const auto *address = MHD_get_connection_info(m_wire, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
    const auto took = std::chrono::duration_cast<milliseconds>(ConnectionWatch::Clock::now() - m_start);
    std::string line = timeText() + ' ' + (address ? addressText(address->client_addr) : "-") + ' '
        + (m_notebookName.empty() ? "-" : m_notebookName) + ' ' + shownMethod(m_method) + ' '
        + (SyncApi::knowsPath(m_path) ? m_path : "(other)") + ' '
        + (m_status > 0 ? std::to_string(m_status) : "-") + " in=" + std::to_string(m_received)
        + " out=" + std::to_string(m_sent) + ' ' + std::to_string(took.count()) + "ms";
    if (m_cut)
        line += " broken off";
    if (!m_answer.trouble.empty())
        line += ": " + m_answer.trouble;
    m_server.m_log.write(line);
}

} // namespace nimbrelle::server
