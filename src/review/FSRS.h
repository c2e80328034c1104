#pragma once

#include "review/ReviewState.h"

/// Free Spaced Repetition Scheduler, generation 5: the published formulas with the 19 default weights, a
/// power forgetting curve with decay -0.5, a same-day rule and mean reversion towards the difficulty of an
/// easy first answer. Pure: reads no clock and no settings, safe from any thread.
namespace nimbrelle::FSRS {

/// 19/81, so that recall is 0.9 when the elapsed days equal the stability.
inline constexpr double factor = 0.2345679012345679;

/// The state after an answer at `now`; `state` is absent for a word never reviewed. `retention` is the wanted
/// probability of recall at the moment the word comes due, in (0, 1).
ReviewState review(const std::optional<ReviewState> &state, Rating rating, Timestamp now, double retention);

/// Predicted probability of recall at `now`; a review in the future counts as just now.
double retrievability(const ReviewState &state, Timestamp now);

} // namespace nimbrelle::FSRS
