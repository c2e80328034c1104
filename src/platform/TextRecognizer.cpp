#include "platform/TextRecognizer.h"

#include <algorithm>

namespace nimbrelle {

QRectF RecognizedLine::boxOf(qsizetype from, qsizetype length) const
{
    QRectF round;
    const qsizetype end = std::min(from + length, unitBoxes.size());
    for (qsizetype unit = std::max(from, qsizetype{0}); unit < end; ++unit)
        round |= unitBoxes.at(unit);
    return round;
}

double RecognizedLine::confidenceOf(qsizetype from, qsizetype length) const
{
    double least = 100;
    const qsizetype end = std::min(from + length, unitConfidences.size());
    for (qsizetype unit = std::max(from, qsizetype{0}); unit < end; ++unit)
        least = std::min(least, unitConfidences.at(unit));
    return least;
}

} // namespace nimbrelle
