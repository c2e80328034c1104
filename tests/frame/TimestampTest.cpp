#include "frame/Timestamp.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

TEST(Timestamp, HasOneTextForm)
{
    const Timestamp time = Timestamp{} + 1772353805s + 999999us;
    EXPECT_EQ(isoText(time), u"2026-03-01T08:30:05Z"_s);
    EXPECT_EQ(timestampFromIso(u"2026-03-01T08:30:05Z"_s), Timestamp{} + 1772353805s);
    EXPECT_EQ(timestampFromIso(u"0000-03-01T08:30:05Z"_s), distantPast) << "what is read can be written";
    EXPECT_EQ(isoText(Timestamp{} - 1us), u"1969-12-31T23:59:59Z"_s);
}

TEST(Timestamp, RefusesEveryOtherForm)
{
    for (const char *text :
        {"", "2026-03-01", "2026-03-01T08:30:05", "2026-03-01T08:30:05.000Z", "2026-03-01T08:30:05+00:00",
            "2026-03-01t08:30:05z", "2026-02-29T08:30:05Z", "2026-03-01T24:00:00Z", "2026-03-01T08:60:00Z",
            "2026-03-01T08:30:60Z", "2026-3-01T008:30:05Z", " 2026-03-01T08:30:05Z", "2026-03-01T08:30:05Z ",
            "２026-03-01T08:30:05Z", "+026-03-01T08:30:05Z"})
        EXPECT_EQ(timestampFromIso(QString::fromUtf8(text)), std::nullopt) << text;
}

TEST(Timestamp, ArithmeticStaysInsideTheTextForm)
{
    const Timestamp day{std::chrono::sys_days{std::chrono::year{2026} / 3 / 1}};
    EXPECT_EQ(addDays(day, std::numeric_limits<qint64>::max()), distantFuture);
    EXPECT_EQ(addDays(day, std::numeric_limits<qint64>::min()), distantPast);
    EXPECT_EQ(addSeconds(day, 1e300), distantFuture);
    EXPECT_EQ(addSeconds(day, 129600.5) - day, 129600s + 500ms);
    EXPECT_DOUBLE_EQ(daysBetween(day, addDays(day, -7)), -7);
    EXPECT_EQ(isoText(distantFuture), u"9999-12-31T23:59:59Z"_s);
}

} // namespace
