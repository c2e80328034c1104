#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace nimbrelle::server {

/// What this process counts of its work, without a token, a name or an address. Calls may come from any
/// thread.
class Metrics {
public:
    enum class RequestKind { ping, read, write, other };

    struct Request {
        RequestKind kind = RequestKind::other;
        unsigned status = 0; ///< 0: the connection broke off before the end of the answer
        std::uint64_t received = 0; ///< bytes of the body
        std::uint64_t sent = 0; ///< bytes of a document that was sent whole
        std::chrono::duration<double> took{};
        bool storeFailed = false;
    };

    static RequestKind kindOf(const std::string &method, const std::string &path);

    void count(const Request &request);
    void connectionOpened();
    void connectionClosed();
    void connectionRefused();

    /// In Prometheus' text form; `heldBytes` are those of documents in memory.
    std::string text(std::uint64_t heldBytes) const;

private:
    static constexpr std::array bounds{
        0.001, 0.0025, 0.005, 0.01, 0.025, 0.05, 0.1, 0.25, 0.5, 1.0, 2.5, 5.0, 10.0, 30.0, 60.0, 120.0};

    struct Latency {
        std::array<std::uint64_t, bounds.size() + 1> counts{}; ///< the last: above all bounds
        double sum = 0;
    };

    std::string requestLines() const;
    std::string latencyLines() const;

    mutable std::mutex m_mutex;
    std::map<std::pair<RequestKind, unsigned>, std::uint64_t> m_requests;
    std::map<RequestKind, Latency> m_latencies;
    std::uint64_t m_received = 0;
    std::uint64_t m_sent = 0;
    std::uint64_t m_storeErrors = 0;
    std::uint64_t m_open = 0;
    std::uint64_t m_refused = 0;
};

} // namespace nimbrelle::server
