#pragma once

#include "frame/TextRange.h"
#include "platform/TextRecognizer.h"
#include "screen/CaptureArea.h"

namespace nimbrelle {

class ScreenCapture;

/// Reads text that exists only as pixels. Keeps nothing: no picture outlives the call that took it.
///
/// The static functions are pure. Their boxes and points are normalized to the picture: 0...1, origin at the
/// bottom left, y upward. Points and rectangles on the screen are global, origin at the bottom left of the
/// main screen, y upward.
class ScreenOCR {
public:
    struct Word {
        QString text;
        QRectF box;

        bool operator==(const Word &) const = default;
    };

    struct Line {
        QString text; ///< after clean-up
        QRectF box;
        QList<Word> words; ///< in reading order

        bool operator==(const Line &) const = default;
    };

    struct Result {
        std::optional<QString> word; ///< the word at the point; absent when it was not sought
        QString context; ///< the lines round the point as running text
        std::optional<QRectF> wordRect; ///< present with `word`; on the screen once recognize() gives it

        bool operator==(const Result &) const = default;
    };

    enum class Seek { contextOnly, word };

    ScreenOCR(const Screens &screens, ScreenCapture &capture, TextRecognizer &recognizer);

    /// Whether the screen may be captured. Never asks the user.
    bool isAllowed() const;

    /// The text at and round a point. Absent when the point is on no screen, or on no word when one is
    /// sought, or there is no text. Throws CaptureFailure, RecognitionFailure, or Cancelled after a stop.
    QCoro::Task<std::optional<Result>> recognize(QPointF around, Seek seek, std::stop_token stop);

    /// All text in a rectangle, absent or empty when there is none. Fails as recognize() does.
    QCoro::Task<std::optional<QString>> recognizeText(QRectF in, std::stop_token stop);

    /// The lines cleaned and cut into words, in the order of the engine.
    static QList<Line> linesFrom(const QList<RecognizedLine> &recognized);

    /// A bar that can only be a misread l becomes one. The length stays, so ranges of the raw text stay
    /// valid.
    static QString cleaned(QString text);

    /// The words of `text`: split at blanks and punctuation, an apostrophe inside a word kept.
    static QList<TextRange> wordRanges(const QString &text);

    /// The lines as running text; a word split by a hyphen at a line's end is mended.
    static QString join(const QList<Line> &lines);

    /// Top to bottom, and left to right within a row.
    static QList<Line> inReadingOrder(const QList<Line> &lines);

    /// Absent when there is no line, or the point is on no word that could be English (Seek::word).
    static std::optional<Result> analyze(const QList<Line> &lines, QPointF cursor, Seek seek);

private:
    QCoro::Task<QList<Line>> recognizeLines(Picture picture, RecognitionStyle style, std::stop_token stop);
    QCoro::Task<Picture> pictureOf(CaptureArea area, std::stop_token stop);

    const Screens &m_screens;
    ScreenCapture &m_capture;
    TextRecognizer &m_recognizer;
};

} // namespace nimbrelle
