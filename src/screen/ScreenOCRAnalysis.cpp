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

const Word *wordAt(const Line &line, double x)
{
    const auto distanceTo = [x](const Word &word) { return distance(x, minX(word.box), maxX(word.box)); };
    const auto nearest = std::min_element(line.words.begin(), line.words.end(),
        [&](const Word &a, const Word &b) { return distanceTo(a) < distanceTo(b); });
    if (nearest == line.words.end() || distanceTo(*nearest) >= wordMargin || !hasAsciiLetter(nearest->text))
        return nullptr;
    return &*nearest;
}

// Lines of the anchor's paragraph: near it, and in its column.
QString contextRound(const Line &anchor, const QList<Line> &lines)
{
    const double height = std::max(anchor.box.height(), minAnchorHeight);
    QList<Line> near;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(near), [&](const Line &line) {
        return std::abs(midY(line.box) - midY(anchor.box)) <= contextHeights * height
            && maxX(line.box) >= minX(anchor.box) - columnMargin
            && minX(line.box) <= maxX(anchor.box) + columnMargin;
    });
    return ScreenOCR::join(
        sorted(near, [height](const Line &a, const Line &b) { return readsBefore(a, b, height * 0.5); }));
}

Line lineFrom(const RecognizedLine &recognized)
{
    Line line{.text = ScreenOCR::cleaned(recognized.text), .box = recognized.box, .words = {}};
    for (const TextRange &range : ScreenOCR::wordRanges(line.text)) {
        const QRectF box = recognized.boxOf(range.start, range.length);
        if (!box.isNull())
            line.words.append(
                {.text = line.text.sliced(range.start, range.length), .box = box, .start = range.start});
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
        const Line *anchor = lineNearest(lines, cursor);
        if (!anchor)
            return std::nullopt;
        return Result{
            .word = std::nullopt, .context = contextRound(*anchor, lines), .wordRect = std::nullopt};
    }
    const Line *anchor = lineUnder(lines, cursor);
    const Word *word = anchor ? wordAt(*anchor, cursor.x()) : nullptr;
    if (!word)
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
