#pragma once

#include "platform/TextRecognizer.h"

#include <QRectF>
#include <QString>
#include <QStringList>

#include <vector>

namespace nimbrelle::bench {

struct DrawnWord {
    QString text;
    QRectF box; ///< in pixels, y downward
};

/// One drawn picture of 760 by 200 points and what stands in it.
struct Sheet {
    QString name;
    Picture picture;
    RecognitionStyle style = RecognitionStyle::plain;
    std::vector<DrawnWord> words;
};

/// Sans and serif in sizes of 9 to 24 pixels, light and dark, two columns, interface text, subtitles. The
/// same pictures on every machine with the same fonts.
std::vector<Sheet> ocrCorpus();

/// The sheet's words that don't stand in `lines` with the same letters at the same place.
QStringList missedWords(const Sheet &sheet, const QList<RecognizedLine> &lines);

} // namespace nimbrelle::bench
