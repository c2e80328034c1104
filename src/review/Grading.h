#pragma once

#include "review/ReviewQuestion.h"

namespace nimbrelle {

/// The verdict on a typed answer.
struct Grade {
    Rating rating = Rating::again;
    std::optional<QString> message; ///< shown to the learner; absent when there is nothing to remark

    bool operator==(const Grade &) const = default;
};

/// `hintsUsed` letters were given away while the answer was typed.
Grade grade(const QString &input, const ReviewQuestion &question, qint64 hintsUsed);

/// Insertions, deletions and substitutions of characters that turn `a` into `b`.
qint64 editDistance(const QString &a, const QString &b);

/// Two neighbouring characters changed places, and nothing else differs.
bool isAdjacentSwap(const QString &a, const QString &b);

/// `input` cut back to what is right of it, with the next letter of `answer` added; absent when it is whole.
std::optional<QString> withNextLetter(const QString &input, const QString &answer);

} // namespace nimbrelle
