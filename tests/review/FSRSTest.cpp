#include "review/FSRS.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace std::chrono_literals;

namespace {

constexpr double learning = 0.95;
const Timestamp now = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"});

ReviewState reviewedBefore(std::chrono::microseconds ago, double stability = 5, double difficulty = 6)
{
    return {stability, difficulty, now, now - ago, 3, 1, 2};
}

double dueDays(const ReviewState &state)
{
    return daysBetween(state.lastReview, state.due);
}

TEST(FSRS, BeginsByTheFirstAnswer)
{
    struct Sample {
        Rating rating;
        double stability, difficulty, days;
        qint64 lapses, level;
    };
    const Sample samples[]{{Rating::again, 0.40255, 7.1949, 600.0 / 86400, 1, 0},
        {Rating::hard, 1.18385, 6.4883053, 1, 0, 1}, {Rating::good, 3.173, 5.2824344, 1.4613657, 0, 1},
        {Rating::easy, 15.69105, 3.2245016, 7.2267134, 0, 1}};
    for (const Sample &sample : samples) {
        const ReviewState state = FSRS::review(std::nullopt, sample.rating, now, learning);
        EXPECT_DOUBLE_EQ(state.stability, sample.stability);
        EXPECT_NEAR(state.difficulty, sample.difficulty, 1e-6);
        EXPECT_NEAR(dueDays(state), sample.days, 1e-6);
        EXPECT_EQ(state.lapses, sample.lapses);
        EXPECT_EQ(state.level, sample.level);
        EXPECT_EQ(state.reps, 1);
        EXPECT_EQ(state.lastReview, now);
    }
}

// Worked out by hand from the published formulas, for stability 5 and difficulty 6.
TEST(FSRS, GrowsByTheDayRuleBelowOneDayAndByRecallFromThereOn)
{
    struct Sample {
        std::chrono::microseconds ago;
        Rating rating;
        double stability;
    };
    const Sample samples[]{{0us, Rating::again, 2.5051426209675416}, {0us, Rating::hard, 4.199206871904659},
        {24h - 1us, Rating::good, 7.038856073687706}, {24h - 1us, Rating::easy, 11.79877446800273},
        {24h, Rating::again, 1.1731224549090047}, {24h, Rating::hard, 5.523718121681725},
        {24h, Rating::good, 7.262281303160797}, {24h, Rating::easy, 11.763768640190149},
        {240h, Rating::again, 1.657614793284666}, {240h, Rating::easy, 61.50990876747335}};
    for (const Sample &sample : samples) {
        const ReviewState state = FSRS::review(reviewedBefore(sample.ago), sample.rating, now, learning);
        EXPECT_NEAR(state.stability, sample.stability, 1e-6)
            << sample.ago.count() << "us " << caseName(sample.rating);
    }
    EXPECT_NEAR(FSRS::review(reviewedBefore(-48h), Rating::good, now, learning).stability, 7.0388561, 1e-6)
        << "a review in the future counts as just now";
}

TEST(FSRS, NeverRaisesStabilityByALapse)
{
    EXPECT_DOUBLE_EQ(FSRS::review(reviewedBefore(240h, 0.2), Rating::again, now, learning).stability, 0.2);
    EXPECT_DOUBLE_EQ(FSRS::review(reviewedBefore(1h, 0.1), Rating::again, now, learning).stability, 0.1);
}

TEST(FSRS, MovesDifficultyTowardsAnEasyStart)
{
    const auto next = [](double difficulty, Rating rating) {
        return FSRS::review(reviewedBefore(1h, 5, difficulty), rating, now, learning).difficulty;
    };
    EXPECT_NEAR(next(10, Rating::again), 9.9688327, 1e-6);
    EXPECT_NEAR(next(6, Rating::again), 7.2793946, 1e-6);
    EXPECT_NEAR(next(6, Rating::good), 5.9872327, 1e-6);
    EXPECT_DOUBLE_EQ(next(1, Rating::easy), 1);
}

TEST(FSRS, ClimbsTheVisibleLadder)
{
    struct Sample {
        qint64 from;
        Rating rating;
        qint64 to;
    };
    const Sample samples[]{{0, Rating::again, 0}, {3, Rating::again, 2}, {3, Rating::hard, 3},
        {3, Rating::good, 4}, {5, Rating::easy, 6}, {6, Rating::easy, 6},
        {std::numeric_limits<qint64>::max(), Rating::easy, 6}};
    for (const Sample &sample : samples) {
        ReviewState state = reviewedBefore(48h);
        state.level = sample.from;
        const ReviewState after = FSRS::review(state, sample.rating, now, learning);
        EXPECT_EQ(after.level, sample.to);
        EXPECT_EQ(after.reps, 4);
        EXPECT_EQ(after.lapses, sample.rating == Rating::again ? 2 : 1);
    }
}

TEST(FSRS, HoldsIntervalsBetweenADayAndAYear)
{
    const ReviewState steady = FSRS::review(reviewedBefore(10h, 1e6), Rating::good, now, learning);
    EXPECT_EQ(steady.due - now, 365 * 24h);
    EXPECT_GT(steady.stability, 1e6);
    EXPECT_EQ(FSRS::review(reviewedBefore(10h, 0.1), Rating::hard, now, learning).due - now, 24h);
    EXPECT_EQ(FSRS::review(reviewedBefore(10h, 1e6), Rating::again, now, learning).due - now, 10min);
}

TEST(FSRS, ForgetsATenthInTheDaysOfTheStability)
{
    const ReviewState state = reviewedBefore(5 * 24h);
    EXPECT_NEAR(FSRS::retrievability(state, now), 0.9, 1e-12);
    EXPECT_EQ(FSRS::retrievability(state, now - 30 * 24h), 1);
}

TEST(FSRS, TakesRatingsFromOneToFourOnly)
{
    EXPECT_EQ(ratingFromRaw(0), std::nullopt);
    EXPECT_EQ(ratingFromRaw(5), std::nullopt);
    for (qint64 raw = 1; raw <= 4; ++raw)
        EXPECT_EQ(rawValue(ratingFromRaw(raw).value()), raw);
}

} // namespace
