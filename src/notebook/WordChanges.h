#pragma once

#include "notebook/WordEntry.h"

namespace nimbrelle {

/// What one recognition answer did to the word.
enum class ReviewOutcome { normal, graduated, becameLeech };

/// What an answer or a decision of the learner does to a word. Log, files and counters are the store's.
namespace WordChanges {

/// How long a rest is that the screens offer.
inline constexpr qint64 restDays = 7;

ReviewOutcome review(WordEntry &word, Rating rating, const AppConfig &config, Timestamp now);
/// One rung up the spelling ladder, or down, or none.
void spell(WordEntry &word, Rating rating, Timestamp now);

void rest(WordEntry &word, qint64 days, Timestamp now);
void wake(WordEntry &word, Timestamp now);
void joinLearning(WordEntry &word, Timestamp now);
void leaveLearning(WordEntry &word, Timestamp now);
void setWantToLearn(WordEntry &word, bool value, Timestamp now);
void setSpellPractice(WordEntry &word, bool on, Timestamp now);

} // namespace WordChanges

} // namespace nimbrelle
