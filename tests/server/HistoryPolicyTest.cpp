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

std::vector<std::int64_t> dropped(const std::vector<VersionRecord> &records, sys_seconds at, int words = 10)
{
    const auto next = static_cast<std::int64_t>(records.size()) + 1;
    return HistoryPolicy::changeFor({.version = next, .writtenAt = at, .words = words}, records).dropped;
}

} // namespace

TEST(HistoryPolicy, KeepsTheNewestTwenty)
{
    EXPECT_THAT(dropped({}, noon), IsEmpty());
    EXPECT_THAT(dropped(versions(19, noon, 1min), noon + 1h), IsEmpty());
    EXPECT_THAT(dropped(versions(22, noon, 1min), noon + 1h), ElementsAre(1, 2, 3));
}

TEST(HistoryPolicy, KeepsTheLastOfEachDayForSixtyDays)
{
    // Two a day for 80 days; the last twenty versions are the last ten days.
    auto records = versions(160, noon, 12h);
    const auto now = records.back().writtenAt;
    records.pop_back();
    const auto found = dropped(records, now);
    const auto today = floor<days>(now);
    for (std::size_t index = 0; index < 140; ++index) {
        const auto day = floor<days>(records[index].writtenAt);
        const bool lastOfDay = day != floor<days>(records[index + 1].writtenAt);
        const bool isDropped = std::ranges::count(found, records[index].version) > 0;
        EXPECT_EQ(isDropped, !lastOfDay || today - day >= 60 * days(1)) << index;
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
