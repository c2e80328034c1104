#include "frame/DayKey.h"

#include "support/Printers.h"
#include "support/TimeZone.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

Timestamp at(const char *iso)
{
    return *timestampFromIso(std::string_view{iso});
}

TEST(DayKey, IsTheLocalDay)
{
    const TimeZone shanghai("Asia/Shanghai");
    EXPECT_EQ(DayKey::string(at("2026-03-01T15:59:59Z")), u"2026-03-01"_s);
    EXPECT_EQ(DayKey::string(at("2026-03-01T16:00:00Z")), u"2026-03-02"_s);
    EXPECT_EQ(DayKey::date(u"2026-03-02"), at("2026-03-01T16:00:00Z"));
    const TimeZone newYork("America/New_York");
    EXPECT_EQ(DayKey::string(at("2026-03-01T04:59:59Z")), u"2026-02-28"_s);
}

TEST(DayKey, StartsAtTheFirstMomentWhereMidnightDoesNotExist)
{
    const TimeZone saoPaulo("America/Sao_Paulo");
    EXPECT_EQ(DayKey::date(u"2018-11-04"), at("2018-11-04T03:00:00Z")); // 00:00 jumped to 01:00
    EXPECT_EQ(DayKey::string(*DayKey::date(u"2018-11-04")), u"2018-11-04"_s);
}

TEST(DayKey, ReadsStrictly)
{
    for (const char16_t *key :
        {u"", u"2026-3-1", u"2026-03-01 ", u" 2026-03-01", u"2026/03/01", u"2026-02-29", u"2026-13-01",
            u"2026-00-10", u"20260301", u"２０２６-03-01", u"+026-03-01", u"2026-03-01T00:00:00Z"})
        EXPECT_EQ(DayKey::date(key), std::nullopt) << QString::fromUtf16(key).toStdString();
}

} // namespace
