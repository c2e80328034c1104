#include "server/HistoryPolicy.h"

#include <algorithm>
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
    for (int index = 0; index < count; ++index)
        records.push_back({.version = index + 1, .writtenAt = first + index * apart, .words = 10});
    return records;
}

} // namespace

TEST(HistoryPolicy, KeepsTheNewestTwenty)
{
    EXPECT_THAT(HistoryPolicy::versionsToDrop(versions(20, noon, 1min), noon + 1h), IsEmpty());
    EXPECT_THAT(HistoryPolicy::versionsToDrop(versions(23, noon, 1min), noon + 1h), ElementsAre(1, 2, 3));
}

TEST(HistoryPolicy, KeepsTheLastOfEachDayForSixtyDays)
{
    // Two a day for 80 days; the last twenty versions are the last ten days.
    const auto records = versions(160, noon, 12h);
    const auto now = records.back().writtenAt;
    const auto dropped = HistoryPolicy::versionsToDrop(records, now);
    const auto isDropped = [&](std::int64_t version) {
        return std::ranges::find(dropped, version) != dropped.end();
    };
    const auto today = floor<days>(now);
    for (std::size_t index = 0; index < records.size() - 20; ++index) {
        const auto day = floor<days>(records[index].writtenAt);
        const bool lastOfDay = day != floor<days>(records[index + 1].writtenAt);
        EXPECT_EQ(isDropped(records[index].version), !lastOfDay || today - day >= 60 * days(1)) << index;
    }
}

TEST(HistoryPolicy, KeepsForGoodWhatStoodBeforeALoss)
{
    auto records = versions(30, noon, 1min);
    records[4].beforeLoss = true;
    EXPECT_THAT(
        HistoryPolicy::versionsToDrop(records, noon + years(3)), ElementsAre(1, 2, 3, 4, 6, 7, 8, 9, 10));
}

TEST(HistoryPolicy, AThirdIsALoss)
{
    EXPECT_TRUE(HistoryPolicy::losesThird(30, 20));
    EXPECT_FALSE(HistoryPolicy::losesThird(30, 21));
    EXPECT_TRUE(HistoryPolicy::losesThird(1, 0));
    EXPECT_FALSE(HistoryPolicy::losesThird(0, 0));
    EXPECT_FALSE(HistoryPolicy::losesThird(10, 30));
}
