#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace nimbrelle::server {

/// How many bytes of unfinished bodies all connections together may hold.
class BodyBudget {
public:
    explicit BodyBudget(std::uint64_t limit) : m_limit(limit) { }
    bool reserve(std::uint64_t bytes);
    void release(std::uint64_t bytes) { m_reserved -= bytes; }
    std::uint64_t reserved() const { return m_reserved; }

private:
    const std::uint64_t m_limit;
    std::atomic<std::uint64_t> m_reserved{0};
};

/// One body on its way in. What it holds counts against the budget until it goes or is taken out.
class RequestBody {
public:
    enum class Outcome { kept, tooLong, overBudget };

    /// `expected` is the length that was announced, if any; memory is taken only as bytes arrive.
    RequestBody(BodyBudget &budget, std::uint64_t limit, std::optional<std::uint64_t> expected);
    RequestBody(const RequestBody &) = delete;
    RequestBody &operator=(const RequestBody &) = delete;
    ~RequestBody() { clear(); }

    /// After another outcome than `kept` nothing is held any more.
    Outcome append(std::string_view piece);
    std::string take();

private:
    void clear();
    bool grow(std::uint64_t needed);

    BodyBudget &m_budget;
    const std::uint64_t m_limit;
    const std::uint64_t m_expected;
    std::uint64_t m_reserved = 0;
    std::string m_bytes;
};

} // namespace nimbrelle::server
