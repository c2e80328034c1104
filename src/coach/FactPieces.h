#pragma once

#include "coach/Diary.h"
#include "notebook/WordEntry.h"

/// The pieces of the coach's record, each as the lines that it puts there: none when it has nothing to tell.
/// A line break at the beginning of a heading sets the piece apart. Words come in the notebook's order.
namespace nimbrelle::facts {

/// @name From the log
/// @{
QStringList timeOfDay(const Diary &diary, const QString &today);
QStringList firstUse(const Diary &diary);
QStringList lastStudyDay(const Diary &diary);
QStringList recentDays(const Diary &diary);
/// Words forgotten at least twice in two weeks; `words` lends meaning, sentence and memory aid.
QStringList forgottenWords(const Diary &diary, const QList<WordEntry> &words);
QStringList recalledWords(const Diary &diary);
QStringList recentSpelling(const Diary &diary);
qint64 reviewsToday(const Diary &diary);
/// One line for each word of today's reviews.
QStringList outcomesToday(const Diary &diary);
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
