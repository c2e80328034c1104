#include "server/Metrics.h"

#include <algorithm>
#include <charconv>
#include <sstream>

namespace nimbrelle::server {

namespace {

const char *nameOf(Metrics::RequestKind kind)
{
    switch (kind) {
    case Metrics::RequestKind::ping:
        return "ping";
    case Metrics::RequestKind::read:
        return "read";
    case Metrics::RequestKind::write:
        return "write";
    case Metrics::RequestKind::other:
        break;
    }
    return "other";
}

std::string heading(const char *name, const char *type, const char *help)
{
    const std::string full = std::string("nimbrelle_") + name;
    return "# HELP " + full + ' ' + help + "\n# TYPE " + full + ' ' + type + '\n';
}

std::string single(const char *name, const char *type, const char *help, std::uint64_t value)
{
    return heading(name, type, help) + "nimbrelle_" + name + ' ' + std::to_string(value) + '\n';
}

// The shortest text that gives the same number again.
std::string exactText(double value)
{
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

} // namespace

Metrics::RequestKind Metrics::kindOf(const std::string &method, const std::string &path)
{
    if (path == "/v1/ping")
        return RequestKind::ping;
    if (path != "/v1/bundle")
        return RequestKind::other;
    if (method == "PUT")
        return RequestKind::write;
    return method == "GET" || method == "HEAD" ? RequestKind::read : RequestKind::other;
}

void Metrics::count(const Request &request)
{
    const auto bucket = std::ranges::lower_bound(bounds, request.took.count()) - bounds.begin();
    const std::lock_guard lock(m_mutex);
    ++m_requests[{request.kind, request.status}];
    Latency &latency = m_latencies[request.kind];
    ++latency.counts[static_cast<std::size_t>(bucket)];
    latency.sum += request.took.count();
    m_received += request.received;
    m_sent += request.sent;
    m_storeErrors += request.storeFailed ? 1 : 0;
}

void Metrics::connectionOpened()
{
    const std::lock_guard lock(m_mutex);
    ++m_open;
}

void Metrics::connectionClosed()
{
    const std::lock_guard lock(m_mutex);
    --m_open;
}

void Metrics::connectionRefused()
{
    const std::lock_guard lock(m_mutex);
    ++m_refused;
}

std::string Metrics::text(std::uint64_t heldBytes) const
{
    const std::lock_guard lock(m_mutex);
    return requestLines() + latencyLines()
        + single("received_bytes_total", "counter", "Bytes of request bodies.", m_received)
        + single("sent_bytes_total", "counter", "Bytes of documents sent whole.", m_sent)
        + single("store_errors_total", "counter", "Requests that failed in the store.", m_storeErrors)
        + single("open_connections", "gauge", "Connections that are open now.", m_open)
        + single("refused_connections_total", "counter", "Connections beyond the limit of their address.",
            m_refused)
        + single("held_bytes", "gauge", "Bytes of documents in memory now.", heldBytes);
}

std::string Metrics::requestLines() const
{
    std::string lines = heading("requests_total", "counter", "Requests by kind and status; 0: broken off.");
    for (const auto &[key, count] : m_requests)
        lines += std::string("nimbrelle_requests_total{kind=\"") + nameOf(key.first) + "\",status=\""
            + std::to_string(key.second) + "\"} " + std::to_string(count) + '\n';
    return lines;
}

std::string Metrics::latencyLines() const
{
    std::ostringstream lines;
    lines.imbue(std::locale::classic());
    lines << heading("request_seconds", "histogram", "From the end of the head to the end of the answer.");
    for (const auto &[kind, latency] : m_latencies) {
        const std::string label = std::string("kind=\"") + nameOf(kind) + '"';
        std::uint64_t below = 0;
        for (std::size_t index = 0; index < bounds.size(); ++index) {
            below += latency.counts[index];
            lines << "nimbrelle_request_seconds_bucket{" << label << ",le=\"" << bounds[index] << "\"} "
                  << below << '\n';
        }
        below += latency.counts.back();
        lines << "nimbrelle_request_seconds_bucket{" << label << ",le=\"+Inf\"} " << below << '\n'
              << "nimbrelle_request_seconds_sum{" << label << "} " << exactText(latency.sum) << '\n'
              << "nimbrelle_request_seconds_count{" << label << "} " << below << '\n';
    }
    return lines.str();
}

} // namespace nimbrelle::server
