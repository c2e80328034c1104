#include "coach/LocalTimes.h"

#include "frame/DayKey.h"
#include "support/Printers.h"
#include "support/TimeZone.h"

#include <QDateTime>

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

struct Span {
    const char *zone;
    const char *from;
};

// Days with and without a change of clocks: of an hour, of half an hour, at half past, of a whole day; and
// zones that are not whole hours away.
class LocalTimesTest : public testing::TestWithParam<Span> { };

TEST_P(LocalTimesTest, AgreeWithTheSystemAtEveryMinute)
{
    const TimeZone zone(GetParam().zone);
    const Timestamp from = *timestampFromIso(std::string_view{GetParam().from});
    LocalTimes times;
    for (int minute = 0; minute < 3 * 24 * 60; ++minute) {
        const Timestamp time = from + std::chrono::minutes{minute};
        const QDateTime system = QDateTime::fromSecsSinceEpoch(
            std::chrono::floor<std::chrono::seconds>(time.time_since_epoch()).count());
        const std::chrono::year_month_day day{times.at(time).day};
        ASSERT_EQ(QDate(static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
                      static_cast<int>(static_cast<unsigned>(day.day()))),
            system.date())
            << isoText(time).toStdString();
        ASSERT_EQ(times.at(time).hour, system.time().hour()) << isoText(time).toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Zones, LocalTimesTest,
    testing::Values(Span{"Asia/Shanghai", "2026-03-13T00:00:00Z"},
        Span{"America/New_York", "2026-03-07T00:00:00Z"}, Span{"America/New_York", "2026-10-31T00:00:00Z"},
        Span{"Australia/Lord_Howe", "2026-04-03T00:00:00Z"}, Span{"Asia/Kathmandu", "2026-03-13T00:00:00Z"},
        Span{"Pacific/Apia", "2011-12-29T00:00:00Z"}, Span{"Asia/Shanghai", "1940-05-30T00:00:00Z"}));

TEST(LocalTimes, BearTheEndsOfTime)
{
    LocalTimes times;
    for (const Timestamp end : {Timestamp::min(), distantPast, distantFuture, Timestamp::max()}) {
        EXPECT_GE(times.at(end).hour, 0);
        EXPECT_LE(times.at(end).hour, 23);
    }
    EXPECT_LT(times.at(Timestamp::min()).day, times.at(Timestamp::max()).day);
}

} // namespace
