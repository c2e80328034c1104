#include "review/FSRS.h"

#include "frame/Saturate.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbrelle::FSRS {

namespace {

constexpr std::array<double, 19> w{0.40255, 1.18385, 3.173, 15.69105, 7.1949, 0.5345, 1.4604, 0.0046, 1.54575,
    0.1192, 1.01925, 1.9395, 0.11, 0.29605, 2.2698, 0.2315, 2.9898, 0.51655, 0.6621};

constexpr double decay = -0.5;
constexpr double minStability = 0.1;
constexpr double minDifficulty = 1;
constexpr double maxDifficulty = 10;
constexpr double relearnSeconds = 600;
constexpr double maxIntervalDays = 365;
constexpr qint64 maxLevel = 6;
// w[7] times the first difficulty of easy, and exp(w[8]); held as constants so that every platform agrees.
constexpr double reversionTargetTerm = 0.01483270731110829;
constexpr double successScale = 4.691488924563984;

double gradeOf(Rating rating)
{
    return static_cast<double>(rating);
}

// The forgetting curve solved for the days at which recall equals `retention`, between one day and a year.
double intervalSeconds(double stability, double retention)
{
    const double days = stability / factor * (std::pow(retention, 1 / decay) - 1);
    return days <= 1 ? secondsPerDay : std::min(days, maxIntervalDays) * secondsPerDay;
}

Timestamp dueAfter(Rating rating, double stability, Timestamp now, double retention)
{
    return addSeconds(now, rating == Rating::again ? relearnSeconds : intervalSeconds(stability, retention));
}

ReviewState firstReview(Rating rating, Timestamp now, double retention)
{
    const double stability = w[static_cast<std::size_t>(rating)];
    const double difficulty = w[4] - std::exp(w[5] * gradeOf(rating)) + 1;
    const bool isAgain = rating == Rating::again;
    return {.stability = stability,
        .difficulty = std::clamp(difficulty, minDifficulty, maxDifficulty),
        .due = dueAfter(rating, stability, now, retention),
        .lastReview = now,
        .reps = 1,
        .lapses = isAgain ? 1 : 0,
        .level = isAgain ? 0 : 1};
}

double nextDifficulty(double difficulty, Rating rating)
{
    const double damped =
        difficulty + (-w[6] * (gradeOf(rating) - 2)) * (maxDifficulty - difficulty) / (maxDifficulty - 1);
    return std::clamp(damped * (1 - w[7]) + reversionTargetTerm, minDifficulty, maxDifficulty);
}

double sameDayStability(double stability, Rating rating)
{
    return stability * std::exp(w[17] * (gradeOf(rating) - 2 + w[18]));
}

// A lapse can never raise stability.
double lapseStability(double stability, double difficulty, double recall)
{
    const double forgotten = w[11] * std::pow(difficulty, -w[12]) * (std::pow(stability + 1, w[13]) - 1)
        * std::exp(w[14] * (1 - recall));
    return std::min(stability, forgotten);
}

double successStability(double stability, double difficulty, double recall, Rating rating)
{
    const double hardPenalty = rating == Rating::hard ? w[15] : 1;
    const double easyBonus = rating == Rating::easy ? w[16] : 1;
    const double increase = 1
        + successScale * (11 - difficulty) * std::pow(stability, -w[9]) * (std::exp(w[10] * (1 - recall)) - 1)
            * hardPenalty * easyBonus;
    return stability * increase;
}

double nextStability(const ReviewState &state, Rating rating, Timestamp now)
{
    const double recall = retrievability(state, now);
    if (daysBetween(state.lastReview, now) < 1)
        return sameDayStability(state.stability, rating);
    if (rating == Rating::again)
        return lapseStability(state.stability, state.difficulty, recall);
    return successStability(state.stability, state.difficulty, recall, rating);
}

qint64 nextLevel(qint64 level, Rating rating)
{
    constexpr std::array<qint64, 4> step{-1, 0, 1, 2};
    const qint64 moved = saturatingAdd(level, step[static_cast<std::size_t>(rating)]);
    return std::min(rating == Rating::again ? std::max<qint64>(moved, 0) : moved, maxLevel);
}

} // namespace

double retrievability(const ReviewState &state, Timestamp now)
{
    const double elapsed = std::max(0.0, daysBetween(state.lastReview, now));
    return std::pow(1 + elapsed * factor / state.stability, decay);
}

ReviewState review(const std::optional<ReviewState> &state, Rating rating, Timestamp now, double retention)
{
    if (!state)
        return firstReview(rating, now, retention);
    // Not above is written so that a NaN of a damaged file ends at the floor too.
    const double grown = nextStability(*state, rating, now);
    const double stability = grown > minStability ? grown : minStability;
    return {.stability = stability,
        .difficulty = nextDifficulty(state->difficulty, rating),
        .due = dueAfter(rating, stability, now, retention),
        .lastReview = now,
        .reps = saturatingAdd(state->reps, 1),
        .lapses = rating == Rating::again ? saturatingAdd(state->lapses, 1) : state->lapses,
        .level = nextLevel(state->level, rating)};
}

} // namespace nimbrelle::FSRS
