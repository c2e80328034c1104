#include "server/RequestBody.h"

#include <algorithm>

namespace nimbrelle::server {

bool BodyBudget::reserve(std::uint64_t bytes)
{
    if (m_reserved.fetch_add(bytes) + bytes <= m_limit)
        return true;
    m_reserved -= bytes;
    return false;
}

RequestBody::RequestBody(BodyBudget &budget, std::uint64_t limit, std::optional<std::uint64_t> expected)
    : m_budget(budget), m_limit(limit), m_expected(std::min(expected.value_or(limit), limit))
{
}

RequestBody::Outcome RequestBody::append(std::string_view piece)
{
    const std::uint64_t needed = m_bytes.size() + piece.size();
    const bool tooLong = needed > m_limit;
    if (tooLong || !grow(needed)) {
        clear();
        return tooLong ? Outcome::tooLong : Outcome::overBudget;
    }
    m_bytes.append(piece);
    return Outcome::kept;
}

std::string RequestBody::take()
{
    std::string bytes = std::move(m_bytes);
    clear();
    return bytes;
}

void RequestBody::clear()
{
    m_bytes = {};
    m_budget.release(m_reserved);
    m_reserved = 0;
}

bool RequestBody::grow(std::uint64_t needed)
{
    if (needed <= m_reserved)
        return true;
    constexpr std::uint64_t firstStep = 64 * 1024;
    const std::uint64_t step = std::max({needed, m_reserved * 2, firstStep});
    const std::uint64_t target = std::max(needed, std::min(step, m_expected));
    if (!m_budget.reserve(target - m_reserved))
        return false;
    m_reserved = target;
    m_bytes.reserve(target);
    return true;
}

} // namespace nimbrelle::server
