#pragma once

#include "frame/Failure.h"
#include "platform/Picture.h"

#include <QCoro/QCoroTask>
#include <QList>
#include <QRectF>
#include <QString>

#include <stop_token>

namespace nimbrelle {

/// One line of text. Boxes are normalized to the picture: x and y from 0 to 1, origin at the bottom left, y
/// upward, so QRectF::top() is the lower edge.
struct RecognizedLine {
    QString text;
    QRectF box;
    QList<QRectF> unitBoxes; ///< one for each UTF-16 unit of `text`; a null one for a blank between words
    QList<double> unitConfidences; ///< how sure the engine is of the unit's word, 0 to 100; empty: certain

    /// The box round these units; null when none of them has one.
    QRectF boxOf(qsizetype from, qsizetype length) const;
    /// The least confidence among these units.
    double confidenceOf(qsizetype from, qsizetype length) const;

    bool operator==(const RecognizedLine &) const = default;
};

/// What the picture is taken for.
enum class RecognitionStyle {
    plain, ///< text on a calm ground, dark on light or light on dark
    subtitles, ///< bright, mostly outlined text over a moving picture: a second try where plain found nothing
};

/// The engine is missing or failed; the text says which.
class RecognitionFailure : public Failure {
    using Failure::Failure;
};

/// Reads English text off pictures. The work runs on a thread of its own, one picture after another; a
/// stopped one that has not begun is passed over.
class TextRecognizer {
public:
    virtual ~TextRecognizer() = default;

    /// The lines in reading order, as the engine sees it; none is a normal result. Resumes on the caller's
    /// thread, whose event loop must run. Throws RecognitionFailure, or Cancelled after a stop.
    virtual QCoro::Task<QList<RecognizedLine>> recognize(
        Picture picture, RecognitionStyle style, std::stop_token stop) = 0;
};

} // namespace nimbrelle
