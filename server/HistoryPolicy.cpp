#include "server/HistoryPolicy.h"

#include <functional>
#include <map>
#include <ranges>
#include <set>
#include <span>

namespace nimbrelle::server {

namespace {

constexpr std::size_t newestKept = 20;
constexpr std::size_t daysKept = 60;

std::chrono::sys_days dayOf(const VersionRecord &record)
{
    return std::chrono::floor<std::chrono::days>(record.writtenAt);
}

// The last version of each of the newest days that have one. Days are counted by what was written on them and
// not back from a clock: a clock that runs far ahead adds one day, where it would else let all others go.
std::set<std::int64_t> dailyVersions(std::span<const VersionRecord> records)
{
    std::map<std::chrono::sys_days, std::int64_t, std::greater<>> lastOfDay;
    for (const VersionRecord &record : records)
        lastOfDay[dayOf(record)] = record.version;
    std::set<std::int64_t> kept;
    for (const auto &[day, version] : lastOfDay | std::views::take(daysKept))
        kept.insert(version);
    return kept;
}

bool losesThird(std::int64_t wordsBefore, std::int64_t wordsAfter)
{
    return wordsAfter < wordsBefore && (wordsBefore - wordsAfter) * 3 >= wordsBefore;
}

std::vector<std::int64_t> versionsToDrop(std::span<const VersionRecord> records)
{
    std::vector<std::int64_t> dropped;
    const auto daily = dailyVersions(records);
    for (std::size_t index = 0; index + newestKept < records.size(); ++index) {
        const VersionRecord &record = records[index];
        if (!daily.contains(record.version) && !record.beforeLoss)
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
