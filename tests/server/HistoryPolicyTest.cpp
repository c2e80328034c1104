#include "server/HistoryPolicy.h"

#include <gmock/gmock.h>

using namespace nimbrelle::server;
using namespace std::chrono;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr sys_seconds noon = sys_days(2026y / March / 1) + 12h;

std::vector<VersionRecord> versions(int count, sys_seconds first, seconds apart)
{
    std::vector<VersionRecord> records;
    records.reserve(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
        records.push_back({.version = index + 1, .writtenAt = first + index * apart, .words = 10});
    return records;
}

std::vector<std::int64_t> dropped(const std::vector<VersionRecord> &records, sys_seconds at)
{
    const auto next = static_cast<std::int64_t>(records.size()) + 1;
    return HistoryPolicy::changeFor({.version = next, .writtenAt = at, .words = 10}, records).dropped;
}

} // namespace

TEST(HistoryPolicy, KeepsTheNewestTwenty)
{
    EXPECT_THAT(dropped(versions(19, noon, 1min), noon + 1h), IsEmpty());
    EXPECT_THAT(dropped(versions(22, noon, 1min), noon + 1h), ElementsAre(1, 2, 3));
}

TEST(HistoryPolicy, KeepsTheLastOfEachDayForSixtyDays)
{
    // Two a day, at midnight and at noon, for 80 days; the newest twenty fill the last ten days.
    const auto records = versions(159, noon, 12h);
    std::vector<std::int64_t> expected;
    for (std::int64_t version = 1; version <= 140; ++version) {
        const bool isOld = version / 2 <= 20; // days
        const bool isMidnight = version % 2 == 0;
        if (isOld || isMidnight)
            expected.push_back(version);
    }
    EXPECT_EQ(dropped(records, records.back().writtenAt + 12h), expected);
}

TEST(HistoryPolicy, AClockThatRunsAheadCostsNothing)
{
    // One a day for fifty days; then a day that the clock puts forty years ahead, and back again.
    auto records = versions(50, noon, 24h);
    for (int write = 0; write < 25; ++write) {
        const auto at = noon + days(50) + minutes(write) + (write < 22 ? years(40) : years(0));
        const auto gone = dropped(records, at);
        EXPECT_THAT(gone, testing::Each(testing::Gt(50)));
        const auto next = records.back().version + 1;
        records.push_back({.version = next, .writtenAt = at, .words = 10});
    }
}

TEST(HistoryPolicy, KeepsForGoodWhatStoodBeforeALoss)
{
    auto records = versions(29, noon, 1min);
    records[4].beforeLoss = true;
    EXPECT_THAT(dropped(records, noon + years(3)), ElementsAre(1, 2, 3, 4, 6, 7, 8, 9, 10));
}

TEST(HistoryPolicy, AThirdIsALoss)
{
    const auto isLoss = [](std::int64_t before, std::int64_t after) {
        const VersionRecord kept{.version = 7, .words = before};
        const auto marked = HistoryPolicy::changeFor({.version = 8, .words = after}, {kept}).beforeLoss;
        return marked == 7;
    };
    EXPECT_TRUE(isLoss(30, 20));
    EXPECT_FALSE(isLoss(30, 21));
    EXPECT_TRUE(isLoss(1, 0));
    EXPECT_FALSE(isLoss(0, 0));
    EXPECT_FALSE(isLoss(10, 30));
}
