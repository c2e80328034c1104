#pragma once

#include <QtGlobal>

#include <limits>

/// Sums and differences of settings, which a hand-edited file can put at the ends of 64 bits.
namespace nimbrelle {

constexpr qint64 saturatingAdd(qint64 a, qint64 b)
{
    qint64 sum = 0;
    if (__builtin_add_overflow(a, b, &sum))
        return a < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    return sum;
}

constexpr qint64 saturatingSubtract(qint64 a, qint64 b)
{
    qint64 difference = 0;
    if (__builtin_sub_overflow(a, b, &difference))
        return a < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
    return difference;
}

} // namespace nimbrelle
