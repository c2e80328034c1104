#include "settings/StudySteps.h"

namespace nimbrelle {

namespace {

constexpr StudyStep steps[]{
    {"learningSlots", u"「在学」名额：", u" 个", &AppConfig::learningSlots, 10, 150, 10},
    {"dailyNewLimit", u"每天最多补进 ", u" 个新词", &AppConfig::dailyNewLimit, 1, 30, 1},
    {"sessionSize", u"每轮最多 ", u" 题", &AppConfig::sessionSize, 5, 50, 5},
    {"graduateDays", u"记牢 ", u" 天以上算掌握", &AppConfig::graduateDays, 7, 120, 7},
    {"leechThreshold", u"错 ", u" 次算难啃的词", &AppConfig::leechThreshold, 2, 10, 1},
    {"dormantDays", u"「见过」的词 ", u" 天没再遇到就沉睡", &AppConfig::dormantDays, 7, 120, 7},
};

} // namespace

QString StudyStep::label(const AppConfig &config) const
{
    return QString::fromUtf16(before) + QString::number(config.*value) + QString::fromUtf16(after);
}

std::optional<qint64> StudyStep::up(const AppConfig &config) const
{
    const qint64 stored = config.*value;
    if (stored < from)
        return from;
    return stored > to - by ? std::nullopt : std::optional(stored + by);
}

std::optional<qint64> StudyStep::down(const AppConfig &config) const
{
    const qint64 stored = config.*value;
    if (stored > to)
        return to;
    return stored < from + by ? std::nullopt : std::optional(stored - by);
}

std::span<const StudyStep> studySteps()
{
    return steps;
}

} // namespace nimbrelle
