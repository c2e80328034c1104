#pragma once

#include "platform/TextRecognizer.h"

#include <QPointF>

#include <functional>

class QTextStream;

namespace nimbrelle::SelfTest {

/// The text of the picture that the check reads; in points from the picture's bottom left corner.
struct SheetLine {
    QString text;
    QPointF baseline; ///< where the text begins
};
inline constexpr QSizeF sheetSize{760, 200};
inline constexpr int sheetFontSize = 22;
QList<SheetLine> sheetLines();

/// That text drawn in black on white, one pixel for each point, and the measures of its font.
struct TextSheet {
    Picture picture; ///< invalid when it could not be drawn
    std::function<double(const QString &text)> widthOf;
    double lineHeight = 0;
};

/// Whether pointing at three words of the sheet finds them. Everything handed in outlives the task.
QCoro::Task<bool> runOCR(TextRecognizer &recognizer, TextSheet sheet, QTextStream &out);

} // namespace nimbrelle::SelfTest
