#pragma once

#include "server/Store.h"

namespace nimbrelle::server {

struct MovedContent {
    std::size_t notebooks = 0;
    std::size_t versions = 0;
    std::int64_t bytes = 0;
};

/// Copies all of `from` into the empty store `to`, reads both again and compares them. `from` takes no more
/// changes from then on, so that no server that still uses it acknowledges what would be lost; only when this
/// fails does it go on as before. Throws Failure. May be called again after an interruption.
MovedContent moveStore(Store &from, Store &to);

/// What an interrupted move left behind takes changes again.
void abandonMove(Store &from) noexcept;

} // namespace nimbrelle::server
