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
    bool take(std::uint64_t bytes);
    void giveBack(std::uint64_t bytes) { m_taken -= bytes; }
    std::uint64_t taken() const { return m_taken; }

private:
    const std::uint64_t m_limit;
    std::atomic<std::uint64_t> m_taken{0};
};

/// One body on its way in. What it holds counts against the budget until it goes or is taken out.
class HeldBody {
public:
    enum class Outcome { kept, tooLong, noRoom };

    /// `expected` is the length that was announced, if any; memory is taken only as bytes arrive.
    HeldBody(BodyBudget &budget, std::uint64_t limit, std::optional<std::uint64_t> expected);
    HeldBody(const HeldBody &) = delete;
    HeldBody &operator=(const HeldBody &) = delete;
    ~HeldBody() { clear(); }

    /// After another outcome than `kept` nothing is held any more.
    Outcome append(std::string_view piece);
    std::uint64_t size() const { return m_bytes.size(); }
    std::string_view bytes() const { return m_bytes; }
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
