#include "coach/Diary.h"

#include "frame/DayKey.h"

#include <algorithm>

namespace nimbrelle {

namespace {

using namespace Qt::StringLiterals;

constexpr std::chrono::seconds twoWeeks{1'209'600};

// "recall" was once written for a review; logs that hold it are read for ever.
Deed deedOf(const QString &kind)
{
    static const QHash<QString, Deed> deeds{{u"save"_s, Deed::save}, {u"lookup"_s, Deed::lookup},
        {u"review"_s, Deed::review}, {u"recall"_s, Deed::review}, {u"spell"_s, Deed::spell},
        {u"glance"_s, Deed::glance}, {u"graduate"_s, Deed::graduate}, {u"leech"_s, Deed::leech},
        {u"rest"_s, Deed::rest}};
    return deeds.value(kind, Deed::other);
}

} // namespace

Diary::Diary(const QList<LearningLog::Event> &events, Timestamp now) : m_now(m_localTimes.at(now))
{
    m_entries.reserve(events.size());
    for (const LearningLog::Event &event : events) {
        const LocalTime local = m_localTimes.at(event.time);
        if (!m_days.contains(local.day))
            m_days.emplace(local.day, DayKey::string(event.time));
        m_entries.append(
            {event.time, local, deedOf(event.kind), event.word, event.detail.value_or(QString())});
    }
    std::copy_if(m_entries.cbegin(), m_entries.cend(), std::back_inserter(m_recent),
        [from = now - twoWeeks](const DiaryEntry &entry) { return entry.time >= from; });
}

QMap<QString, QStringList> Diary::recentDetails(Deed deed) const
{
    QList<const DiaryEntry *> wanted;
    for (const DiaryEntry &entry : m_recent) {
        if (entry.deed == deed)
            wanted.append(&entry);
    }
    std::stable_sort(wanted.begin(), wanted.end(),
        [](const DiaryEntry *a, const DiaryEntry *b) { return a->time < b->time; });
    QMap<QString, QStringList> details;
    for (const DiaryEntry *entry : std::as_const(wanted))
        details[entry->word].append(entry->detail);
    return details;
}

} // namespace nimbrelle
