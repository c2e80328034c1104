#pragma once

#include "server/BodyBudget.h"

#include <optional>
#include <string_view>

namespace nimbrelle::server {

/// One body on its way in. What it holds counts against the budget until it goes or is taken out.
class RequestBody {
public:
    enum class Outcome { kept, tooLong, overBudget };

    /// `expected` is the length that was announced, if any; memory is taken only as bytes arrive.
    RequestBody(BodyBudget &budget, std::uint64_t limit, std::optional<std::uint64_t> expected);

    /// After another outcome than `kept` nothing is held any more.
    Outcome append(std::string_view piece);
    HeldBytes take();

private:
    void clear();
    bool grow(std::uint64_t needed);

    BodyBudget &m_budget;
    const std::uint64_t m_limit;
    const std::uint64_t m_expected;
    HeldBytes m_held;
};

} // namespace nimbrelle::server
