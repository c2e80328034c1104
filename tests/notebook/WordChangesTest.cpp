#include "notebook/WordChanges.h"

#include "support/Printers.h"
#include "support/Words.h"

#include <gtest/gtest.h>
#include <limits>

using namespace nimbrelle;
using namespace std::chrono_literals;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-15T12:00:00Z"});

WordEntry reviewed(Stage stage, qint64 lapses, double stability)
{
    return {.review = ReviewState{stability, 5, now, now - 72h, 3, lapses, 1}, .stage = stage};
}

TEST(WordChanges, AWordInLearningGraduatesByStabilityAlone)
{
    const AppConfig config = configWith({.graduateDays = 15});
    WordEntry word{.stage = Stage::learning};
    EXPECT_EQ(WordChanges::review(word, Rating::easy, config, now), ReviewOutcome::graduated);
    EXPECT_EQ(word.stage, Stage::mastered);
    EXPECT_EQ(word.stateAt, now);
    const double atLearningRetention = 15.69105 / 0.2345679012345679 * (std::pow(0.95, -2) - 1);
    EXPECT_NEAR(daysBetween(now, word.review->due), atLearningRetention, 1e-6);

    WordEntry seen = reviewed(Stage::seen, 0, 300), mastered = reviewed(Stage::mastered, 0, 300);
    for (WordEntry *other : {&seen, &mastered}) {
        EXPECT_EQ(WordChanges::review(*other, Rating::good, config, now), ReviewOutcome::normal);
        EXPECT_EQ(other->stateAt, std::nullopt);
    }
    EXPECT_GT(mastered.review->due, seen.review->due) << "a mastered word is asked less often";
}

TEST(WordChanges, TheAnswerThatCrossesTheThresholdMakesALeech)
{
    const auto outcome = [](qint64 lapses, qint64 graduateDays) {
        WordEntry word = reviewed(Stage::learning, lapses, 3);
        return WordChanges::review(word, Rating::again, configWith({.graduateDays = graduateDays}), now);
    };
    EXPECT_EQ(outcome(2, 30), ReviewOutcome::normal);
    EXPECT_EQ(outcome(3, 30), ReviewOutcome::becameLeech);
    EXPECT_EQ(outcome(4, 30), ReviewOutcome::normal);
    EXPECT_EQ(outcome(3, 0), ReviewOutcome::graduated) << "graduation comes first";
}

TEST(WordChanges, TheSpellingLadderIsClimbedOneRungAtATime)
{
    using enum Rating;
    using Rung = std::optional<qint64>;
    constexpr qint64 most = std::numeric_limits<qint64>::max(), least = std::numeric_limits<qint64>::min();
    const std::tuple<Rung, Rating, Rung> steps[]{{{}, again, 0}, {{}, hard, 0}, {0, good, 1}, {1, easy, 2},
        {2, hard, 2}, {4, good, 4}, {3, again, 2}, {most, good, 4}, {least, again, 0}};
    for (const auto &[from, rating, to] : steps) {
        WordEntry word{.spellLevel = from};
        WordChanges::spell(word, rating, now);
        EXPECT_EQ(word, (WordEntry{.spellLevel = to, .lastSpelledAt = now}));
    }
}

TEST(WordChanges, ARestIsOfAnyLengthAndEndsAsSeen)
{
    WordEntry word{.stage = Stage::learning};
    WordChanges::rest(word, 7, now);
    EXPECT_EQ(word, (WordEntry{.stage = Stage::resting, .restUntil = now + 7 * 24h, .stateAt = now}));
    WordChanges::rest(word, std::numeric_limits<qint64>::max(), now);
    EXPECT_EQ(word.restUntil, distantFuture);
    WordChanges::wake(word, now + 1h);
    EXPECT_EQ(word, (WordEntry{.stage = Stage::seen, .stateAt = now + 1h}));
}

} // namespace
