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

TEST(FSRS, BeginsByTheFirstAnswer)
{
    const auto first = [](Rating rating) { return FSRS::review(std::nullopt, rating, now, learning); };
    EXPECT_EQ(first(Rating::again), (ReviewState{0.40255, 7.1949, now + 10min, now, 1, 1, 0}));
    const ReviewState good = first(Rating::good);
    EXPECT_DOUBLE_EQ(good.stability, 3.173);
    EXPECT_NEAR(good.difficulty, 5.2824344, 1e-6);
    EXPECT_NEAR(daysBetween(now, good.due), 1.4613657, 1e-6);
    EXPECT_EQ(first(Rating::hard).due, now + 24h) << "at least a day";
}

// Worked out by hand from the published formulas, for stability 5 and difficulty 6.
TEST(FSRS, GrowsByTheDayRuleBelowOneDayAndByRecallFromThereOn)
{
    using enum Rating;
    const std::tuple<std::chrono::microseconds, Rating, double> samples[]{{0us, again, 2.5051426209675416},
        {0us, hard, 4.199206871904659}, {24h - 1us, good, 7.038856073687706},
        {24h - 1us, easy, 11.79877446800273}, {24h, again, 1.1731224549090047},
        {24h, hard, 5.523718121681725}, {24h, good, 7.262281303160797}, {240h, again, 1.657614793284666},
        {240h, easy, 61.50990876747335},
        {-48h, good, 7.038856073687706}}; // a review in the future counts as just now
    for (const auto &[ago, rating, stability] : samples)
        EXPECT_NEAR(FSRS::review(reviewedBefore(ago), rating, now, learning).stability, stability, 1e-6)
            << ago.count() << "us " << caseName(rating);
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
    using enum Rating;
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    const std::tuple<qint64, Rating, qint64> samples[]{{0, again, 0}, {3, again, 2}, {3, hard, 3},
        {3, good, 4}, {5, easy, 6}, {6, easy, 6}, {most, easy, 6}};
    for (const auto &[from, rating, to] : samples) {
        ReviewState state = reviewedBefore(48h);
        state.level = from;
        const ReviewState after = FSRS::review(state, rating, now, learning);
        EXPECT_EQ(after.level, to);
        EXPECT_EQ(after.reps, 4);
        EXPECT_EQ(after.lapses, rating == again ? 2 : 1);
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

} // namespace
