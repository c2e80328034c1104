#include "server/HeldBody.h"

#include <algorithm>

namespace nimbrelle::server {

bool BodyBudget::take(std::uint64_t bytes)
{
    if (m_taken.fetch_add(bytes) + bytes <= m_limit)
        return true;
    m_taken -= bytes;
    return false;
}

HeldBody::HeldBody(BodyBudget &budget, std::uint64_t limit, std::optional<std::uint64_t> expected)
    : m_budget(budget), m_limit(limit), m_expected(std::min(expected.value_or(limit), limit))
{
}

HeldBody::Outcome HeldBody::append(std::string_view piece)
{
    const std::uint64_t needed = m_bytes.size() + piece.size();
    const bool tooLong = needed > m_limit;
    if (tooLong || !grow(needed)) {
        clear();
        return tooLong ? Outcome::tooLong : Outcome::noRoom;
    }
    m_bytes.append(piece);
    return Outcome::kept;
}

std::string HeldBody::take()
{
    std::string bytes = std::move(m_bytes);
    clear();
    return bytes;
}

void HeldBody::clear()
{
    m_bytes = {};
    m_budget.giveBack(m_reserved);
    m_reserved = 0;
}

bool HeldBody::grow(std::uint64_t needed)
{
    if (needed <= m_reserved)
        return true;
    constexpr std::uint64_t firstStep = 64 * 1024;
    const std::uint64_t step = std::max({needed, m_reserved * 2, firstStep});
    const std::uint64_t wanted = std::max(needed, std::min(step, m_expected));
    if (!m_budget.take(wanted - m_reserved))
        return false;
    m_reserved = wanted;
    m_bytes.reserve(wanted);
    return true;
}

} // namespace nimbrelle::server
