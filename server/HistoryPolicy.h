#pragma once

#include <chrono>
#include <cstdint>
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
};

namespace HistoryPolicy {

inline constexpr std::size_t newestKept = 20;
inline constexpr std::chrono::days dailyKept{60};

bool losesThird(std::int64_t wordsBefore, std::int64_t wordsAfter);

/// Kept are the newest twenty, the last of each UTC day of the past sixty, and all before a loss.
/// `oldestFirst` is in order of version; so is the result.
std::vector<std::int64_t> versionsToDrop(
    std::span<const VersionRecord> oldestFirst, std::chrono::sys_seconds now);

} // namespace HistoryPolicy

} // namespace nimbrelle::server
