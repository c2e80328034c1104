#include "server/HistoryPolicy.h"

#include <algorithm>
#include <functional>
#include <map>
#include <numeric>
#include <ranges>
#include <set>

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

bool exceeds(std::span<const VersionRecord> records, const Quota &quota)
{
    return (quota.versions > 0 && std::ssize(records) > quota.versions)
        || (quota.bytes > 0 && totalBytes(records) > quota.bytes);
}

// `records` are what would be kept with the new one at the end.
void applyQuota(std::vector<VersionRecord> records, const Quota &quota, HistoryChange &change)
{
    while (exceeds(records, quota)) {
        const auto oldest = std::ranges::find(records, false, &VersionRecord::beforeLoss);
        if (oldest == std::prev(records.end())) {
            change.exceedsQuota = true;
            return;
        }
        change.dropped.push_back(oldest->version);
        records.erase(oldest);
    }
    std::ranges::sort(change.dropped);
}

} // namespace

std::int64_t totalBytes(std::span<const VersionRecord> records)
{
    const auto add = [](std::int64_t sum, const VersionRecord &record) { return sum + record.bytes; };
    return std::accumulate(records.begin(), records.end(), std::int64_t{0}, add);
}

HistoryChange HistoryPolicy::changeFor(
    const VersionRecord &added, std::vector<VersionRecord> records, const Quota &quota)
{
    HistoryChange change;
    if (!records.empty() && losesThird(records.back().words, added.words)) {
        records.back().beforeLoss = true;
        change.beforeLoss = records.back().version;
    }
    records.push_back(added);
    change.dropped = versionsToDrop(records);
    std::erase_if(records, [&](const VersionRecord &record) {
        return std::ranges::binary_search(change.dropped, record.version);
    });
    applyQuota(std::move(records), quota, change);
    return change;
}

std::vector<std::int64_t> HistoryPolicy::versionsToPrune(
    const std::vector<VersionRecord> &records, const Pruning &pruning)
{
    std::vector<std::int64_t> pruned;
    const std::size_t kept = std::max<std::size_t>(pruning.keptNewest, 1);
    for (std::size_t index = 0; index + kept < records.size(); ++index) {
        const VersionRecord &record = records[index];
        if (record.writtenAt < pruning.before && (pruning.alsoBeforeLoss || !record.beforeLoss))
            pruned.push_back(record.version);
    }
    return pruned;
}

} // namespace nimbrelle::server
