#include "screen/ScreenOCR.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace nimbrelle {

using Line = ScreenOCR::Line;
using Word = ScreenOCR::Word;

namespace {

constexpr double lineMargin = 0.01; // how far beside a line a point still counts as on it
constexpr double wordMargin = 0.015;
constexpr double minAnchorHeight = 0.02;
constexpr double minRowHeight = 0.005;
constexpr double contextHeights = 3.5;
constexpr double columnMargin = 0.05;

// Text on a screen scores 84 and more. Of another script the lines score 68 at most, and so do their words
// but for one in thirty. Icons come out as one to three letters, now and then with up to 80.
constexpr double sureLine = 70;
constexpr double legibleLine = 60;
constexpr double sureWord = 70;
constexpr double sureShortWord = 80;
constexpr double sureAlone = 85; // in a line of another script
constexpr double possibleWord = 50;
constexpr qsizetype shortWord = 3;
constexpr qsizetype leastLetters = 2; // in a line that belongs to a text
constexpr double pictureEdge = 0.002;
constexpr double widestGap = 1.5; // between two lines of one text, in heights
constexpr double longWord = 12; // in letters
constexpr double mostRoom = 0.15; // for it

double minX(const QRectF &box)
{
    return box.x();
}

double maxX(const QRectF &box)
{
    return box.x() + box.width();
}

double minY(const QRectF &box)
{
    return box.y();
}

double maxY(const QRectF &box)
{
    return box.y() + box.height();
}

double midY(const QRectF &box)
{
    return box.y() + box.height() / 2;
}

double distance(double value, double from, double to)
{
    if (value >= from && value <= to)
        return 0;
    return std::min(std::abs(value - from), std::abs(value - to));
}

bool holds(const QRectF &box, double margin, QPointF point)
{
    return point.x() >= minX(box) - margin && point.x() <= maxX(box) + margin
        && point.y() >= minY(box) - margin && point.y() <= maxY(box) + margin;
}

bool hasAsciiLetter(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
        [](QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); });
}

bool readsBefore(const Line &a, const Line &b, double rowThreshold)
{
    if (std::abs(midY(a.box) - midY(b.box)) > rowThreshold)
        return midY(a.box) > midY(b.box);
    return minX(a.box) < minX(b.box);
}

// A stable insertion sort: "in the same row" is not transitive, and the library's sorts need an order that
// is.
template <class Before> QList<Line> sorted(const QList<Line> &lines, Before before)
{
    QList<Line> result;
    for (const Line &line : lines) {
        qsizetype place = result.size();
        while (place > 0 && before(line, result[place - 1]))
            --place;
        result.insert(place, line);
    }
    return result;
}

const Line *lineUnder(const QList<Line> &lines, QPointF cursor)
{
    const auto under = std::find_if(
        lines.begin(), lines.end(), [&](const Line &line) { return holds(line.box, lineMargin, cursor); });
    return under == lines.end() ? nullptr : &*under;
}

const Line *lineNearest(const QList<Line> &lines, QPointF cursor)
{
    const auto distanceTo = [cursor](const Line &line) {
        return std::pair(distance(cursor.y(), minY(line.box), maxY(line.box)),
            distance(cursor.x(), minX(line.box), maxX(line.box)));
    };
    const auto nearest = std::min_element(lines.begin(), lines.end(),
        [&](const Line &a, const Line &b) { return distanceTo(a) < distanceTo(b); });
    return nearest == lines.end() ? nullptr : &*nearest;
}

bool isCertain(const Line &line, const Word &word)
{
    const double least = word.text.size() <= shortWord ? sureShortWord : sureWord;
    return word.confidence >= (line.confidence() < sureLine ? sureAlone : least);
}

bool isBelieved(const Line &line, const Word &word, ScreenOCR::Seek seek)
{
    return seek == ScreenOCR::Seek::sureWord ? isCertain(line, word) : word.confidence >= possibleWord;
}

const Word *wordAt(const Line &line, double x)
{
    const auto distanceTo = [x](const Word &word) { return distance(x, minX(word.box), maxX(word.box)); };
    const auto nearest = std::min_element(line.words.begin(), line.words.end(),
        [&](const Word &a, const Word &b) { return distanceTo(a) < distanceTo(b); });
    if (nearest == line.words.end() || distanceTo(*nearest) >= wordMargin || !hasAsciiLetter(nearest->text))
        return nullptr;
    return &*nearest;
}

QList<Line> paragraphRound(const Line &anchor, const QList<Line> &lines)
{
    const double height = std::max(anchor.box.height(), minAnchorHeight);
    QList<Line> near;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(near), [&](const Line &line) {
        return std::abs(midY(line.box) - midY(anchor.box)) <= contextHeights * height
            && maxX(line.box) >= minX(anchor.box) - columnMargin
            && minX(line.box) <= maxX(anchor.box) + columnMargin;
    });
    return sorted(near, [height](const Line &a, const Line &b) { return readsBefore(a, b, height * 0.5); });
}

QString contextRound(const Line &anchor, const QList<Line> &lines)
{
    return ScreenOCR::join(paragraphRound(anchor, lines));
}

qsizetype letterCount(const Line &line)
{
    qsizetype letters = 0;
    for (const Word &word : line.words)
        letters += word.text.size();
    return letters;
}

/// Of a line of another script the words that are English all the same.
Line sureWordsOf(const Line &line)
{
    Line kept{.text = {}, .box = line.box, .words = {}};
    for (Word word : line.words) {
        if (!isCertain(line, word))
            continue;
        if (!kept.text.isEmpty())
            kept.text += u' ';
        word.start = kept.text.size();
        kept.text += word.text;
        kept.words.append(word);
    }
    return kept;
}

/// For a long word as large as this one.
double roomOf(const Word &word)
{
    const double letter = word.box.width() / static_cast<double>(std::max(word.text.size(), qsizetype{1}));
    return std::min(longWord * letter, mostRoom);
}

/// Without the first and the last word where the picture's edge cuts them. Of a cut word the engine often
/// makes nothing, so a line goes on where there is no more room than for a long one.
Line withoutCutWords(Line line)
{
    if (line.words.isEmpty())
        return line;
    const Word &leftmost = line.words.first();
    const Word &rightmost = line.words.last();
    line.goesOnLeft = minX(leftmost.box) <= roomOf(leftmost);
    line.goesOnRight = maxX(rightmost.box) >= 1 - roomOf(rightmost);
    while (!line.words.isEmpty() && maxX(line.words.last().box) >= 1 - pictureEdge) {
        line.text.truncate(line.words.last().start);
        line.words.removeLast();
    }
    while (!line.words.isEmpty() && minX(line.words.first().box) <= pictureEdge) {
        const Word first = line.words.takeFirst();
        const qsizetype rest = line.words.isEmpty() ? line.text.size() : line.words.first().start;
        line.text.remove(0, rest);
        for (Word &word : line.words)
            word.start -= rest;
    }
    while (line.text.endsWith(u' ')) // one at the beginning would move the words
        line.text.chop(1);
    return line;
}

bool isCut(const Line &line)
{
    return minY(line.box) <= pictureEdge || maxY(line.box) >= 1 - pictureEdge;
}

bool belongsToText(const Line &line)
{
    return line.confidence() >= sureLine && letterCount(line) >= leastLetters && !isCut(line);
}

double gapBetween(const QRectF &a, const QRectF &b)
{
    return std::max({minY(a) - maxY(b), minY(b) - maxY(a), 0.0});
}

/// Those that the anchor reaches from line to line without a wide gap.
QList<Line> joinedTo(const QRectF &anchor, QList<Line> lines)
{
    QList<QRectF> reached{anchor};
    QList<bool> isReached(lines.size(), false);
    for (qsizetype next = 0; next < reached.size(); ++next)
        for (qsizetype i = 0; i < lines.size(); ++i) {
            const QRectF &box = lines[i].box;
            const double height = std::max({box.height(), reached[next].height(), minAnchorHeight});
            if (isReached[i] || gapBetween(box, reached[next]) > widestGap * height)
                continue;
            isReached[i] = true;
            reached.append(box);
        }
    QList<Line> joined;
    for (qsizetype i = 0; i < lines.size(); ++i)
        if (isReached[i])
            joined.append(lines[i]);
    return joined;
}

Line lineFrom(const RecognizedLine &recognized)
{
    Line line{.text = ScreenOCR::cleaned(recognized.text), .box = recognized.box, .words = {}};
    for (const TextRange &range : ScreenOCR::wordRanges(line.text)) {
        const QRectF box = recognized.boxOf(range.start, range.length);
        if (!box.isNull())
            line.words.append({.text = line.text.sliced(range.start, range.length),
                .box = box,
                .start = range.start,
                .confidence = recognized.confidenceOf(range.start, range.length)});
    }
    return line;
}

} // namespace

QString ScreenOCR::cleaned(QString text)
{
    static const QRegularExpression misreadBar(uR"((?<=[A-Za-z])\||\|(?=[a-z]))"_s);
    return text.replace(misreadBar, u"l"_s);
}

QList<TextRange> ScreenOCR::wordRanges(const QString &text)
{
    static const QRegularExpression word(uR"([\p{L}\p{M}\p{N}]+(?:['’][\p{L}\p{M}\p{N}]+)*)"_s);
    QList<TextRange> ranges;
    for (const QRegularExpressionMatch &match : word.globalMatch(text))
        ranges.append({.start = match.capturedStart(), .length = match.capturedLength()});
    return ranges;
}

QList<Line> ScreenOCR::linesFrom(const QList<RecognizedLine> &recognized)
{
    QList<Line> lines;
    for (const RecognizedLine &line : recognized)
        lines.append(lineFrom(line));
    return lines;
}

double ScreenOCR::Line::confidence() const
{
    double sum = 0;
    qsizetype letters = 0;
    for (const Word &word : words) {
        sum += word.confidence * static_cast<double>(word.text.size());
        letters += word.text.size();
    }
    return letters > 0 ? sum / static_cast<double>(letters) : 0;
}

QList<Line> ScreenOCR::legible(const QList<Line> &lines, QPointF cursor)
{
    const Line *anchor = lineUnder(lines, cursor);
    QList<Line> kept;
    for (const Line &line : lines) {
        if (&line == anchor)
            kept.append(withoutCutWords(line.confidence() < sureLine ? sureWordsOf(line) : line));
        else if (belongsToText(line))
            kept.append(withoutCutWords(line));
    }
    kept.removeIf([](const Line &line) { return line.words.isEmpty(); });
    if (const Line *nearest = anchor ? anchor : lineNearest(kept, cursor))
        return joinedTo(nearest->box, kept);
    return kept;
}

QList<Line> ScreenOCR::inEnglish(QList<Line> lines)
{
    lines.removeIf([](const Line &line) { return line.confidence() < legibleLine; });
    return lines;
}

QList<Line> ScreenOCR::uncut(const QList<Line> &lines)
{
    QList<Line> kept;
    for (const Line &line : lines)
        if (belongsToText(line))
            kept.append(withoutCutWords(line));
    kept.removeIf([](const Line &line) { return line.words.isEmpty(); });
    return kept;
}

QList<Line> ScreenOCR::paragraphAt(const QList<Line> &lines, QPointF cursor)
{
    const Line *anchor = lineNearest(lines, cursor);
    return anchor ? paragraphRound(*anchor, lines) : QList<Line>();
}

QString ScreenOCR::join(const QList<Line> &lines)
{
    QString text;
    for (const Line &line : lines) {
        if (text.endsWith(u'-'))
            text.chop(1);
        else if (!text.isEmpty())
            text += u' ';
        text += line.text;
    }
    return text;
}

std::optional<ScreenOCR::Result> ScreenOCR::analyze(const QList<Line> &lines, QPointF cursor, Seek seek)
{
    if (seek == Seek::contextOnly) {
        if (lines.isEmpty())
            return std::nullopt;
        return Result{
            .word = std::nullopt, .context = join(paragraphAt(lines, cursor)), .wordRect = std::nullopt};
    }
    const Line *anchor = lineUnder(lines, cursor);
    const Word *word = anchor ? wordAt(*anchor, cursor.x()) : nullptr;
    if (!word || !isBelieved(*anchor, *word, seek))
        return std::nullopt;
    return Result{.word = word->text, .context = contextRound(*anchor, lines), .wordRect = word->box};
}

QList<Line> ScreenOCR::inReadingOrder(const QList<Line> &lines)
{
    return sorted(lines, [](const Line &a, const Line &b) {
        const double row = std::max(std::min(a.box.height(), b.box.height()), minRowHeight);
        return readsBefore(a, b, row * 0.5);
    });
}

} // namespace nimbrelle
