#pragma once

#include "notebook/LearningLog.h"

#include <QList>

namespace nimbrelle {

class ConfigStore;
class WordStore;

/// Everything that the program knows about the learner, as one Chinese text: the AI coach may only say what
/// is in it. Reads the stores and the log at each call and changes nothing; no key or token ever gets
/// in. Days are the learner's own, by the time zone of the moment. Main thread only; all handed in must
/// outlive it.
class CoachFacts {
public:
    CoachFacts(const WordStore &words, const ConfigStore &config, const LearningLog &log);

    QString build(Timestamp now) const;
    /// What became of each word reviewed today, a line each; empty when none was. Costs nothing while the log
    /// and the day stay the same.
    QString todayReview(Timestamp now) const;
    /// All events of the log that can be read, in file order.
    QList<LearningLog::Event> events() const;

private:
    const WordStore &m_words;
    const ConfigStore &m_config;
    const LearningLog &m_log;
    mutable std::optional<std::pair<LearningLog::Stamp, QString>> m_readAt; // and the day
    mutable QString m_todayReview;
};

} // namespace nimbrelle
