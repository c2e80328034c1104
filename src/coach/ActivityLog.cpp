#include "coach/ActivityLog.h"

#include "frame/DayKey.h"
#include "frame/RecordCodec.h"

#include <algorithm>

namespace nimbrelle {

namespace {

constexpr std::chrono::seconds twoWeeks{1'209'600};

std::optional<LogKind> kindOf(const LearningLog::Event &event)
{
    const auto kind = caseFrom<LogKind>(event.kind);
    return kind == LogKind::recall ? LogKind::review : kind;
}

} // namespace

ActivityLog::ActivityLog(const QList<LearningLog::Event> &events, Timestamp now, LocalTimes localTimes)
    : m_localTimes(std::move(localTimes)), m_now(m_localTimes.at(now))
{
    m_entries.reserve(events.size());
    for (const LearningLog::Event &event : events) {
        const LocalTime local = m_localTimes.at(event.time);
        if (!m_days.contains(local.day))
            m_days.emplace(local.day, DayKey::string(event.time));
        m_entries.append({.time = event.time,
            .local = local,
            .kind = kindOf(event),
            .word = event.word,
            .detail = event.detail.value_or(QString())});
    }
    std::copy_if(m_entries.cbegin(), m_entries.cend(), std::back_inserter(m_recent),
        [from = now - twoWeeks](const Activity &entry) { return entry.time >= from; });
}

QMap<QString, QStringList> ActivityLog::recentDetails(LogKind kind) const
{
    QList<const Activity *> wanted;
    for (const Activity &entry : m_recent) {
        if (entry.kind == kind)
            wanted.append(&entry);
    }
    std::stable_sort(
        wanted.begin(), wanted.end(), [](const Activity *a, const Activity *b) { return a->time < b->time; });
    QMap<QString, QStringList> details;
    for (const Activity *entry : std::as_const(wanted))
        details[entry->word].append(entry->detail);
    return details;
}

} // namespace nimbrelle
