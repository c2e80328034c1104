#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace nimbrelle::server {

/// One kept version of a document, without its body.
struct VersionRecord {
    std::int64_t version = 0;
    std::chrono::sys_seconds writtenAt;
    std::int64_t words = 0;
    std::int64_t bytes = 0;
    bool beforeLoss = false; ///< the version after it held at most two thirds of its words
};

/// What a new version does to the ones before it.
struct HistoryChange {
    std::optional<std::int64_t> beforeLoss; ///< to be marked so
    std::vector<std::int64_t> dropped; ///< in order of version
};

namespace HistoryPolicy {

/// Kept are the newest twenty, the last of each of the newest sixty UTC days on which something was written,
/// and all before a loss. `records` are those kept so far, in order of version.
HistoryChange changeFor(const VersionRecord &added, std::vector<VersionRecord> records);

} // namespace HistoryPolicy

} // namespace nimbrelle::server
