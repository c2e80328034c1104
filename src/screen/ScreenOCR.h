#pragma once

#include "frame/TextRange.h"
#include "platform/TextRecognizer.h"
#include "screen/CaptureArea.h"

namespace nimbrelle {

class ScreenCapture;
class WindowAtPointer;

/// Reads text that exists only as pixels. Keeps nothing: no picture outlives the call that took it, but for
/// the one that take() hands out, which goes with the gesture that asked for it.
///
/// The static functions are pure. Their boxes and points are normalized to the picture: 0...1, origin at the
/// bottom left, y upward. Points and rectangles on the screen are global, origin at the bottom left of the
/// main screen, y upward.
class ScreenOCR {
public:
    struct Word {
        QString text;
        QRectF box;
        qsizetype start = 0; ///< where it begins in its line's text
        double confidence = 100; ///< how sure the engine is of it, from 0

        bool operator==(const Word &) const = default;
    };

    struct Line {
        QString text; ///< after clean-up
        QRectF box;
        QList<Word> words; ///< in reading order
        bool goesOnLeft = false; ///< the picture's edge cuts it there
        bool goesOnRight = false;

        /// The mean of its letters; 0 without words.
        double confidence() const;
        bool operator==(const Line &) const = default;
    };

    struct Result {
        std::optional<QString> word; ///< the word at the point; absent when it was not sought
        QString context; ///< the lines round the point as running text
        std::optional<QRectF> wordRect; ///< present with `word`; on the screen once recognize() gives it

        bool operator==(const Result &) const = default;
    };

    enum class Seek {
        contextOnly,
        word, ///< what somebody points at on purpose
        sureWord, ///< only what is certainly English: nobody asked
    };

    /// What the screen showed round a point at one moment.
    struct Snapshot {
        CaptureArea area;
        Picture picture;
    };

    /// Text that the user has marked on the screen.
    struct Marked {
        QString text;
        QPointF from; ///< where the button went down
        QPointF to; ///< and where it was released

        QPointF middle() const { return (from + to) / 2; }
    };

    ScreenOCR(const Screens &screens, const WindowAtPointer &window, ScreenCapture &capture,
        TextRecognizer &recognizer);

    /// Whether the screen may be captured. Never asks the user.
    bool isAllowed() const;

    /// The text at and round a point. Lines that go on beyond the picture are followed by one more picture to
    /// each side, inside the window under the pointer. Absent when the point is on no screen, or on no word
    /// when one is sought, or there is no text. Throws CaptureFailure, RecognitionFailure, or Cancelled after
    /// a stop.
    QCoro::Task<std::optional<Result>> recognize(QPointF around, Seek seek, std::stop_token stop);

    /// The picture that recognize() would read, taken before this returns. Absent when the point is on no
    /// screen. Throws CaptureFailure.
    QCoro::Task<std::optional<Snapshot>> take(QPointF around);

    /// The text round what is marked, which stands in it too. A highlight may hide it from the engine, so a
    /// picture from `before` it was marked is read first, then what the screen shows now; where neither has
    /// the marked text, it is put into its gap. Absent when there is no text. Fails as recognize() does.
    QCoro::Task<std::optional<QString>> contextOf(
        Marked marked, std::optional<Snapshot> before, std::stop_token stop);

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

    /// What belongs to the text round the cursor, as a reader would tell it: without lines of another script
    /// or of no words, which come out as words that the engine doesn't believe in, without what the picture's
    /// edges cut, and without what stands apart. Of a doubtful line at the cursor the sure words stay.
    static QList<Line> legible(const QList<Line> &lines, QPointF cursor);

    /// Without the lines of another script, wherever they are.
    static QList<Line> inEnglish(QList<Line> lines);

    /// The lines that belong to some text, without what the picture's edges cut.
    static QList<Line> uncut(const QList<Line> &lines);

    /// The lines near the one at the cursor and in its column, in reading order.
    static QList<Line> paragraphAt(const QList<Line> &lines, QPointF cursor);

    enum class Side { left, right };

    /// Without the words that the edge may have cut between two letters, where a line goes on beyond it.
    static QList<Line> withoutDoubtfulWords(QList<Line> lines, Side side);

    /// Where the paragraph at the cursor goes on beyond that edge of a picture: from the words that are known
    /// outward, as wide as `width`. Absent when none of its lines does.
    static std::optional<QRectF> restOf(const QList<Line> &lines, QPointF cursor, Side side, double width);

    /// The lines with their rest, of which `beside` may repeat some. What stands there by itself is left out.
    static QList<Line> joined(QList<Line> lines, QList<Line> beside, Side side);

    /// Absent when there is no line, or the point is on no word that could be English, if one is sought.
    static std::optional<Result> analyze(const QList<Line> &lines, QPointF cursor, Seek seek);

    /// Whether the text round the middle of `marked` has its words. Case and punctuation don't count.
    static bool hasMarked(const QList<Line> &lines, const Marked &marked);

    /// The lines with the marked text where it stands: in the gap at its place, or instead of what the engine
    /// made of it.
    static QList<Line> withMarked(QList<Line> lines, const Marked &marked);

private:
    enum class Gap { isLeft, isFilled };

    QCoro::Task<std::optional<QString>> contextIn(
        Snapshot seen, Marked marked, Gap gap, std::stop_token stop);
    QCoro::Task<QList<Line>> completed(
        QList<Line> lines, CaptureArea area, QPointF cursor, std::stop_token stop);
    QCoro::Task<QList<Line>> recognizeLines(Picture picture, RecognitionStyle style, std::stop_token stop);

    const Screens &m_screens;
    const WindowAtPointer &m_window;
    ScreenCapture &m_capture;
    TextRecognizer &m_recognizer;
};

} // namespace nimbrelle
