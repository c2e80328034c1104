#pragma once

#include "server/Store.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace nimbrelle::server {

/// How many bytes of documents all connections together may hold: received, kept ready, and being sent. Must
/// outlive its reservations.
class BodyBudget {
public:
    /// A share of the budget, given back when this goes.
    class Reservation {
    public:
        explicit Reservation(BodyBudget &budget) : m_budget(&budget) { }
        Reservation(Reservation &&other) noexcept
            : m_budget(other.m_budget), m_bytes(std::exchange(other.m_bytes, 0))
        {
        }
        Reservation &operator=(Reservation &&other) noexcept
        {
            std::swap(m_budget, other.m_budget);
            std::swap(m_bytes, other.m_bytes);
            return *this;
        }
        ~Reservation() { m_budget->m_reserved -= m_bytes; }

        /// False, with all as it was, when there isn't so much left.
        bool growTo(std::uint64_t bytes);
        std::uint64_t bytes() const { return m_bytes; }

    private:
        BodyBudget *m_budget;
        std::uint64_t m_bytes = 0;
    };

    explicit BodyBudget(std::uint64_t limit) : m_limit(limit) { }
    std::uint64_t limit() const { return m_limit; }
    std::uint64_t reserved() const { return m_reserved; }

private:
    bool reserve(std::uint64_t bytes);

    const std::uint64_t m_limit;
    std::atomic<std::uint64_t> m_reserved{0};
};

/// Bytes that count against a budget as long as they are here.
struct HeldBytes {
    std::string bytes;
    BodyBudget::Reservation reservation;
};

/// The document, which counts until nobody holds it any more, however many send it.
std::shared_ptr<const Document> heldDocument(
    std::shared_ptr<const Document> document, BodyBudget::Reservation reservation);

} // namespace nimbrelle::server
