#pragma once

#include "coach/ActivityLog.h"
#include "notebook/WordEntry.h"

/// The pieces of the learner's record, each as its lines; empty when it does not apply. A line break at the
/// beginning of a heading separates the piece from the one before. Words come in the notebook's order.
namespace nimbrelle::facts {

/// @name From the log
/// @{
QStringList timeOfDay(const ActivityLog &log, const QString &today);
QStringList firstUse(const ActivityLog &log);
QStringList lastStudyDay(const ActivityLog &log);
QStringList recentDays(const ActivityLog &log);
/// Words forgotten at least twice in two weeks; meaning, sentence and memory aid come from `words`.
QStringList forgottenWords(const ActivityLog &log, const QList<WordEntry> &words);
QStringList recalledWords(const ActivityLog &log);
QStringList recentSpelling(const ActivityLog &log);
qint64 reviewsToday(const ActivityLog &log);
/// One line for each word of today's reviews.
QStringList outcomesToday(const ActivityLog &log);
/// @}

/// @name From the notebook
/// @{
QStringList interests(const QStringList &topInterests);
QStringList newWords(const QList<WordEntry> &words, Timestamp now);
QStringList stageCounts(const QList<WordEntry> &words, const AppConfig &config, Timestamp now);
QStringList learningWords(const QList<WordEntry> &words);
QStringList hardWords(const QList<WordEntry> &words, qint64 leechThreshold);
QStringList restingWords(const QList<WordEntry> &words);
QStringList masteredWords(const QList<WordEntry> &words);
QStringList spellPracticeWords(const QList<WordEntry> &words, qint64 count);
/// @}

} // namespace nimbrelle::facts
