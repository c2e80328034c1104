#pragma once

#include "coach/ActivityLog.h"
#include "export/GrowthReport.h"

#include <QHash>

namespace nimbrelle {

/// The log ordered by time and by word, beside the notebook as it is. Words are told apart by their
/// headwords, letter case aside, for the log knows no more of them.
class GrowthHistory {
public:
    /// What the log tells of one word.
    struct Word {
        const WordEntry *entry = nullptr; ///< null for one that is not in the notebook any more
        QList<const Activity *> events; ///< by time
    };

    /// `source` has to outlive it.
    GrowthHistory(const GrowthSource &source, Timestamp now, const QTimeZone &zone);
    Q_DISABLE_COPY_MOVE(GrowthHistory)

    const QList<Word> &words() const { return m_words; }
    /// The first day with an event.
    std::optional<std::chrono::local_days> since() const { return m_since; }
    std::chrono::local_days today() const { return m_log.now().day; }
    std::chrono::local_days dayOf(Timestamp time) const { return m_localTimes.at(time).day; }
    qint64 aheadOfTime() const { return m_aheadOfTime; }

private:
    Word &wordOf(const QString &headword);

    mutable LocalTimes m_localTimes;
    const ActivityLog m_log;
    QHash<QString, qsizetype> m_positions; // by folded headword
    QList<Word> m_words;
    std::optional<std::chrono::local_days> m_since;
    qint64 m_aheadOfTime = 0;
};

/// The parts of a report.
namespace growth {

/// The day of a day key; absent for what is none.
std::optional<std::chrono::local_days> dayOfKey(const QString &key);
GrowthMonths byMonth(const GrowthHistory &history);
/// The earliest day of which the notebook or the log knows.
std::optional<std::chrono::local_days> since(const GrowthHistory &history);
GrowthRecall recall(const GrowthHistory &history);
GrowthCollection collection(const GrowthSource &source);
GrowthSources sources(const GrowthHistory &history);
GrowthMemories memories(const GrowthHistory &history, const QList<AINote> &sentenceNotes);
GrowthLoad load(const GrowthSource &source, Timestamp now, const QTimeZone &zone);

} // namespace growth

} // namespace nimbrelle
