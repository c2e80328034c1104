#include "sync/SyncStatus.h"

#include "support/Printers.h"
#include "support/TimeZone.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

TEST(SyncStatus, TellsTheFirstThatApplies)
{
    const TimeZone zone("Asia/Shanghai");
    const Timestamp now = *timestampFromIso(u"2026-03-01T20:30:05Z");
    struct Case {
        SyncStatus status;
        QString text;
    };
    const Case cases[]{{{true, u"没网"_s, now}, u"正在同步…"_s},
        {{false, u"没网"_s, now}, u"没网。会自动再试"_s}, {{}, u"还没同步过"_s},
        {{false, {}, now - 59s}, u"上次同步：刚刚"_s},
        {{false, {}, now + 1h}, u"上次同步：刚刚"_s}, // the clock was set back
        {{false, {}, now - 60s}, u"上次同步：1 分钟前"_s},
        {{false, {}, now - 3599s}, u"上次同步：59 分钟前"_s},
        {{false, {}, now - 1h}, u"上次同步：3 月 2 日 03:30"_s},
        {{false, {}, now - 24h * 80}, u"上次同步：12 月 12 日 04:30"_s}};
    for (const Case &c : cases)
        EXPECT_EQ(c.status.text(now), c.text);
}

} // namespace
