#pragma once

#include <optional>
#include <string_view>

namespace nimbrelle::practice {

/// What can be made to go wrong, for demonstrations and tests.
enum class Failure {
    none,
    unauthorized, ///< 401
    noBalance, ///< 402
    serverError, ///< 500
    slow, ///< the answer comes after several seconds
    cut, ///< the connection breaks in the middle of the answer
    garbage ///< not JSON; in a stream, between the real pieces
};

/// Of "401", "402", "500", "slow", "cut" or "garbage"; absent for anything else.
std::optional<Failure> failureNamed(std::string_view name);

/// The failure that a key of the form "fail-402" asks for; "wrong" is no valid key; any other key fails
/// nothing.
Failure failureOfKey(std::string_view key);

} // namespace nimbrelle::practice
