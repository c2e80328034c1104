#pragma once

#include "coach/LocalTimes.h"
#include "notebook/LearningLog.h"

#include <QMap>

#include <map>

namespace nimbrelle {

struct Activity {
    Timestamp time;
    LocalTime local;
    std::optional<LogKind> kind; ///< recall reads as review; absent for an unknown one, which is activity too
    QString word;
    QString detail; ///< of a review its rating; of a spelling the mode's label, a blank and the rating
};

/// The learning log as the coach reads it at one moment: every event with its local day and hour. Made anew
/// for each text; no operation costs more than a pass over the events.
class ActivityLog {
public:
    ActivityLog(const QList<LearningLog::Event> &events, Timestamp now, LocalTimes localTimes = {});

    const LocalTime &now() const { return m_now; }
    /// The day keys of all events.
    const std::map<std::chrono::local_days, QString> &days() const { return m_days; }
    bool isToday(const Activity &entry) const { return entry.local.day == m_now.day; }

    /// In file order, which a merge of two logs may have left out of order of time.
    const QList<Activity> &entries() const { return m_entries; }
    /// Those of the last 14 days of 86,400 seconds, in file order.
    const QList<Activity> &recent() const { return m_recent; }
    /// The details of recent events of one kind by word, each in order of time.
    QMap<QString, QStringList> recentDetails(LogKind kind) const;

private:
    LocalTimes m_localTimes;
    LocalTime m_now;
    std::map<std::chrono::local_days, QString> m_days;
    QList<Activity> m_entries;
    QList<Activity> m_recent;
};

} // namespace nimbrelle
