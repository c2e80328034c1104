#pragma once

#include "frame/Record.h"
#include "frame/Timestamp.h"

#include <optional>

namespace nimbrelle {

/// The four answers. Case names go into the log; the raw values, 1 to 4, are used as numbers.
enum class Rating { again, hard, good, easy };
template <> inline constexpr auto caseNames<Rating> = cases("again", "hard", "good", "easy");

constexpr qint64 rawValue(Rating rating)
{
    return static_cast<qint64>(rating) + 1;
}

/// Absent outside 1 to 4.
constexpr std::optional<Rating> ratingFromRaw(qint64 value)
{
    if (value < 1 || value > 4)
        return std::nullopt;
    return static_cast<Rating>(value - 1);
}

/// What the scheduler remembers of one word.
struct ReviewState {
    double stability = 0; ///< days until predicted recall falls to 90 %; at least 0.1
    double difficulty = 0; ///< 1 to 10
    Timestamp due;
    Timestamp lastReview;
    qint64 reps = 0; ///< reviews so far, lapses included
    qint64 lapses = 0; ///< reviews rated again
    qint64 level = 0; ///< 0 to 6; shown to the learner, never read by the scheduler

    bool operator==(const ReviewState &) const = default;
};
template <Is<ReviewState> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("stability", &Record::stability), field("difficulty", &Record::difficulty),
        field("due", &Record::due), field("lastReview", &Record::lastReview), field("reps", &Record::reps),
        field("lapses", &Record::lapses), field("level", &Record::level));

} // namespace nimbrelle
