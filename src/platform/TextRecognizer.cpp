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

} // namespace nimbrelle
