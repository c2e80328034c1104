#include "server/HistoryPolicy.h"

namespace nimbrelle::server::HistoryPolicy {

namespace {

std::chrono::sys_days dayOf(const VersionRecord &record)
{
    return std::chrono::floor<std::chrono::days>(record.writtenAt);
}

bool isLastOfItsDay(std::span<const VersionRecord> records, std::size_t index)
{
    return index + 1 == records.size() || dayOf(records[index]) != dayOf(records[index + 1]);
}

} // namespace

bool losesThird(std::int64_t wordsBefore, std::int64_t wordsAfter)
{
    return wordsAfter < wordsBefore && (wordsBefore - wordsAfter) * 3 >= wordsBefore;
}

std::vector<std::int64_t> versionsToDrop(
    std::span<const VersionRecord> oldestFirst, std::chrono::sys_seconds now)
{
    std::vector<std::int64_t> dropped;
    const auto firstDay = std::chrono::floor<std::chrono::days>(now) - dailyKept;
    for (std::size_t index = 0; index + newestKept < oldestFirst.size(); ++index) {
        const VersionRecord &record = oldestFirst[index];
        const bool daily = dayOf(record) > firstDay && isLastOfItsDay(oldestFirst, index);
        if (!daily && !record.beforeLoss)
            dropped.push_back(record.version);
    }
    return dropped;
}

} // namespace nimbrelle::server::HistoryPolicy
