#include "server/RequestBody.h"

#include <algorithm>

namespace nimbrelle::server {

RequestBody::RequestBody(BodyBudget &budget, std::uint64_t limit, std::optional<std::uint64_t> expected)
    : m_budget(budget)
    , m_limit(limit)
    , m_expected(std::min(expected.value_or(limit), limit))
    , m_held{.bytes = {}, .reservation = BodyBudget::Reservation(budget)}
{
}

RequestBody::Outcome RequestBody::append(std::string_view piece)
{
    const std::uint64_t needed = m_held.bytes.size() + piece.size();
    const bool tooLong = needed > m_limit;
    if (tooLong || !grow(needed)) {
        clear();
        return tooLong ? Outcome::tooLong : Outcome::overBudget;
    }
    m_held.bytes.append(piece);
    return Outcome::kept;
}

HeldBytes RequestBody::take()
{
    return std::exchange(m_held, {.bytes = {}, .reservation = BodyBudget::Reservation(m_budget)});
}

void RequestBody::clear()
{
    take();
}

bool RequestBody::grow(std::uint64_t needed)
{
    const std::uint64_t reserved = m_held.reservation.bytes();
    if (needed <= reserved)
        return true;
    constexpr std::uint64_t firstStep = 64UL * 1024;
    const std::uint64_t step = std::max({needed, reserved * 2, firstStep});
    const std::uint64_t target = std::max(needed, std::min(step, m_expected));
    if (!m_held.reservation.growTo(target))
        return false;
    m_held.bytes.reserve(target);
    return true;
}

} // namespace nimbrelle::server
