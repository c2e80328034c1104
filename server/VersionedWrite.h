#pragma once

#include "server/Store.h"

#include <functional>

namespace nimbrelle::server {

/// Whether a document may be written over this version; 0: nothing is stored.
using WriteCondition = std::function<bool(std::int64_t version)>;

/// Writes a new version into any store, by the one rule for what is kept of the earlier ones. Returns it, or
/// nothing when the condition does not hold for the version that is stored by then. Throws StoreFailure.
std::optional<std::int64_t> writeVersion(
    Store &store, std::int64_t notebook, const NewDocument &document, const WriteCondition &condition);

/// Writes what `version` held as a new, higher version and returns that; absent when it isn't kept.
std::optional<std::int64_t> restoreVersion(
    Store &store, std::int64_t notebook, std::int64_t version, std::chrono::sys_seconds now);

} // namespace nimbrelle::server
