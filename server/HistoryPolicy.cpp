#include "server/HistoryPolicy.h"

#include <span>

namespace nimbrelle::server {

namespace {

constexpr std::size_t newestKept = 20;
constexpr std::chrono::days dailyKept{60};

std::chrono::sys_days dayOf(const VersionRecord &record)
{
    return std::chrono::floor<std::chrono::days>(record.writtenAt);
}

bool isLastOfItsDay(std::span<const VersionRecord> records, std::size_t index)
{
    return index + 1 == records.size() || dayOf(records[index]) != dayOf(records[index + 1]);
}

bool losesThird(std::int64_t wordsBefore, std::int64_t wordsAfter)
{
    return wordsAfter < wordsBefore && (wordsBefore - wordsAfter) * 3 >= wordsBefore;
}

std::vector<std::int64_t> versionsToDrop(std::span<const VersionRecord> records)
{
    std::vector<std::int64_t> dropped;
    const auto firstDay = dayOf(records.back()) - dailyKept;
    for (std::size_t index = 0; index + newestKept < records.size(); ++index) {
        const VersionRecord &record = records[index];
        const bool daily = dayOf(record) > firstDay && isLastOfItsDay(records, index);
        if (!daily && !record.beforeLoss)
            dropped.push_back(record.version);
    }
    return dropped;
}

} // namespace

HistoryChange HistoryPolicy::changeFor(const VersionRecord &added, std::vector<VersionRecord> records)
{
    HistoryChange change;
    if (!records.empty() && losesThird(records.back().words, added.words)) {
        records.back().beforeLoss = true;
        change.beforeLoss = records.back().version;
    }
    records.push_back(added);
    change.dropped = versionsToDrop(records);
    return change;
}

} // namespace nimbrelle::server
