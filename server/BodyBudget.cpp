#include "server/BodyBudget.h"

namespace nimbrelle::server {

// A document that is longer than all of the budget passes alone: it must not become unreadable because
// somebody lowered a limit.
bool BodyBudget::reserve(std::uint64_t bytes)
{
    const std::uint64_t before = m_reserved.fetch_add(bytes);
    if (before == 0 || before + bytes <= m_limit)
        return true;
    m_reserved -= bytes;
    return false;
}

bool BodyBudget::Reservation::growTo(std::uint64_t bytes)
{
    if (bytes <= m_bytes)
        return true;
    if (!m_budget->reserve(bytes - m_bytes))
        return false;
    m_bytes = bytes;
    return true;
}

std::shared_ptr<const Document> heldDocument(
    std::shared_ptr<const Document> document, BodyBudget::Reservation reservation)
{
    struct Held {
        std::shared_ptr<const Document> document;
        BodyBudget::Reservation reservation;
    };
    const Document *address = document.get();
    return {std::make_shared<Held>(std::move(document), std::move(reservation)), address};
}

} // namespace nimbrelle::server
