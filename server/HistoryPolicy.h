#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace nimbrelle::server {

/// One kept version of a document, without its body.
struct VersionRecord {
    std::int64_t version = 0;
    std::chrono::sys_seconds writtenAt;
    std::int64_t words = 0;
    std::int64_t bytes = 0;
    bool beforeLoss = false; ///< the version after it held at most two thirds of its words

    bool operator==(const VersionRecord &) const = default;
};

std::int64_t totalBytes(std::span<const VersionRecord> records);

/// What the kept versions of a notebook may come to, the newest among them. 0: no limit.
struct Quota {
    std::int64_t bytes = 0;
    std::int64_t versions = 0;
    bool operator==(const Quota &) const = default;
};

/// What a new version does to the ones before it.
struct HistoryChange {
    std::optional<std::int64_t> beforeLoss; ///< to be marked so
    std::vector<std::int64_t> dropped; ///< in order of version
    bool exceedsQuota = false; ///< so the new version can't be stored
};

/// Which versions the operator wants to be rid of: all that each of these allows to go.
struct Pruning {
    std::size_t keptNewest = 20;
    std::chrono::sys_seconds before; ///< written before this
    bool alsoBeforeLoss = false; ///< else those that stood before a loss stay
};

namespace HistoryPolicy {

/// Kept are the newest twenty, the last of each of the newest sixty UTC days on which something was written,
/// and all before a loss. `records` are those kept so far, in order of version. Where that is more than the
/// quota, the oldest go too, but for those before a loss, which only prune removes.
HistoryChange changeFor(
    const VersionRecord &added, std::vector<VersionRecord> records, const Quota &quota = {});

/// Never the newest.
std::vector<std::int64_t> versionsToPrune(const std::vector<VersionRecord> &records, const Pruning &pruning);

} // namespace HistoryPolicy

} // namespace nimbrelle::server
