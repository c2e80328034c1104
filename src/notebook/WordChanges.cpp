#include "notebook/WordChanges.h"

#include "frame/AppConfig.h"
#include "frame/Saturate.h"
#include "review/FSRS.h"
#include "review/SpellMode.h"

#include <algorithm>

namespace nimbrelle::WordChanges {

namespace {

constexpr double retentionLearning = 0.95;
constexpr double retentionMastered = 0.9;

qint64 nextSpellLevel(qint64 level, Rating rating)
{
    switch (rating) {
    case Rating::again:
        return std::max<qint64>(saturatingSubtract(level, 1), 0);
    case Rating::hard:
        return level;
    case Rating::good:
    case Rating::easy:
        return std::min(saturatingAdd(level, 1), maxSpellLevel);
    }
    return level;
}

/// These word states are stored as true or not at all.
std::optional<bool> trueOrAbsent(bool value)
{
    return value ? std::optional(true) : std::nullopt;
}

void setStage(WordEntry &word, Stage stage, Timestamp now)
{
    word.stage = stage;
    word.stateAt = now;
}

} // namespace

ReviewOutcome review(WordEntry &word, Rating rating, const AppConfig &config, Timestamp now)
{
    const qint64 priorLapses = word.lapses();
    const double retention = word.stage == Stage::mastered ? retentionMastered : retentionLearning;
    word.review = FSRS::review(word.review, rating, now, retention);
    if (word.stage == Stage::learning && word.review->stability >= static_cast<double>(config.graduateDays)) {
        setStage(word, Stage::mastered, now);
        return ReviewOutcome::graduated;
    }
    const bool crosses = priorLapses < config.leechThreshold && word.lapses() >= config.leechThreshold;
    return crosses ? ReviewOutcome::becameLeech : ReviewOutcome::normal;
}

void spell(WordEntry &word, Rating rating, Timestamp now)
{
    word.spellLevel = nextSpellLevel(word.spellLevel.value_or(0), rating);
    word.lastSpelledAt = now;
}

void rest(WordEntry &word, qint64 days, Timestamp now)
{
    setStage(word, Stage::resting, now);
    word.restUntil = addDays(now, days);
}

void wake(WordEntry &word, Timestamp now)
{
    setStage(word, Stage::seen, now);
    word.restUntil.reset();
}

void joinLearning(WordEntry &word, Timestamp now)
{
    setStage(word, Stage::learning, now);
}

void leaveLearning(WordEntry &word, Timestamp now)
{
    setStage(word, Stage::seen, now);
}

void setWantToLearn(WordEntry &word, bool value, Timestamp now)
{
    word.wantToLearn = trueOrAbsent(value);
    word.stateAt = now;
}

void setSpellPractice(WordEntry &word, bool on, Timestamp now)
{
    word.spellPractice = trueOrAbsent(on);
    word.stateAt = now;
}

} // namespace nimbrelle::WordChanges
