#include "coach/CoachHistory.h"

#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/DayKey.h"
#include "frame/RecordFile.h"

#include <algorithm>

namespace nimbrelle {

namespace {

constexpr qsizetype daysKept = 29;

} // namespace

CoachHistory::CoachHistory(const AppPaths &paths, const Clock &clock, DataWriter &writer)
    : m_path(paths.coach)
    , m_clock(clock)
    , m_damaged(clock, writer)
    , m_days(readRecordFile<QList<CoachDay>>(m_path, m_damaged).value_or(QList<CoachDay>()))
{
}

std::optional<CoachHistory::Briefing> CoachHistory::briefingBefore(const QString &today) const
{
    for (auto day = m_days.crbegin(); day != m_days.crend(); ++day) {
        if (day->day == today)
            continue;
        const auto first = std::find_if(day->messages.cbegin(), day->messages.cend(),
            [](const CoachMessage &message) { return message.fromCoach; });
        if (first == day->messages.cend())
            continue;
        return first->text.isEmpty() ? std::nullopt
                                     : std::optional(Briefing{.day = day->day, .text = first->text});
    }
    return std::nullopt;
}

void CoachHistory::put(const QString &today, const QList<CoachMessage> &messages)
{
    m_days.removeIf([&today](const CoachDay &day) { return day.day == today; });
    if (!messages.isEmpty())
        m_days.append({.day = today, .messages = messages});
    write();
}

// A later day, from a clock that goes wrong, would stand in today's place, and what finds no room would be
// missing again after each add().
QList<CoachDay> CoachHistory::missing(const QList<CoachDay> &days) const
{
    const QString today = DayKey::string(m_clock.now());
    QList<CoachDay> missing;
    QStringList all;
    for (const CoachDay &day : m_days)
        all.append(day.day);
    for (const CoachDay &offered : days) {
        if (all.contains(offered.day) || !DayKey::date(offered.day) || offered.day > today)
            continue;
        missing.append(offered);
        all.append(offered.day);
    }
    all.sort();
    all.remove(0, std::max<qsizetype>(0, all.size() - daysKept));
    missing.removeIf([&all](const CoachDay &day) { return !all.contains(day.day); });
    return missing;
}

void CoachHistory::add(const QList<CoachDay> &days)
{
    m_days += missing(days);
    std::ranges::stable_sort(m_days, {}, &CoachDay::day);
    write();
}

void CoachHistory::write()
{
    m_days.remove(0, std::max<qsizetype>(0, m_days.size() - daysKept));
    writeRecordFile(m_path, m_days, m_damaged);
}

} // namespace nimbrelle
