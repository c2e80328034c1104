#pragma once

#include "platform/TextRecognizer.h"

#include <QRect>

#include <vector>

namespace nimbrelle {

/// A word as the engine gives it, in pixels of the prepared picture, y downward.
struct EngineWord {
    QString text;
    QRect box;
    std::vector<QRect> unitBoxes; ///< one for each UTF-16 unit of `text`
    double confidence = 100; ///< from 0
};
using EngineLine = std::vector<EngineWord>;

/// The engine reads the pronoun I as a bar again and again. A word that is a bar alone is I where it is no
/// taller than the line's capitals and stands at ordinary gaps beside lower-case letters; elsewhere bars are
/// real separators and stay.
void mendPronouns(EngineLine &line);

/// The line in normalized coordinates of a picture of `size` pixels, its words joined by blanks.
RecognizedLine recognizedLine(const EngineLine &line, QSize size);

} // namespace nimbrelle
