#include "export/GrowthHistory.h"

#include <algorithm>

namespace nimbrelle {

GrowthHistory::GrowthHistory(const GrowthSource &source, Timestamp now, const QTimeZone &zone)
    : m_localTimes(zone), m_log(source.events, now, LocalTimes(zone))
{
    for (const WordEntry &entry : source.words) {
        Word &word = wordOf(entry.headword);
        if (!word.entry)
            word.entry = &entry;
    }
    QList<const Activity *> ordered;
    ordered.reserve(m_log.entries().size());
    for (const Activity &activity : m_log.entries()) {
        if (activity.time <= now)
            ordered.append(&activity);
    }
    m_aheadOfTime = m_log.entries().size() - ordered.size();
    std::ranges::stable_sort(ordered, {}, &Activity::time);
    for (const Activity *activity : std::as_const(ordered))
        wordOf(activity->word).events.append(activity);
    if (!ordered.isEmpty())
        m_since = ordered.first()->local.day;
}

GrowthHistory::Word &GrowthHistory::wordOf(const QString &headword)
{
    const QString folded = headwordKey(headword);
    auto place = m_positions.constFind(folded);
    if (place == m_positions.constEnd()) {
        place = m_positions.insert(folded, m_words.size());
        m_words.append(Word{});
    }
    return m_words[*place];
}

} // namespace nimbrelle
