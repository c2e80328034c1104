#include "screen/ScreenOCR.h"

#include <algorithm>
#include <cmath>

namespace nimbrelle {

using Line = ScreenOCR::Line;
using Word = ScreenOCR::Word;
using Side = ScreenOCR::Side;

namespace {

constexpr double rowReach = 0.5; // of a line's height
constexpr double lastRowReach = 2.5;
constexpr double widestBlank = 3; // between two words, in letters; even margins stretch it

bool goesOn(const Line &line, Side side)
{
    return side == Side::left ? line.goesOnLeft : line.goesOnRight;
}

const Word &outermost(const Line &line, Side side)
{
    return side == Side::left ? line.words.first() : line.words.last();
}

bool areInOneRow(const Line &a, const Line &b)
{
    return std::abs(a.box.center().y() - b.box.center().y())
        <= rowReach * std::max(a.box.height(), b.box.height());
}

bool overlap(const QRectF &a, const QRectF &b)
{
    return a.left() < b.right() && b.left() < a.right();
}

qsizetype beginOfToken(const QString &text, qsizetype at)
{
    while (at > 0 && !text[at - 1].isSpace())
        --at;
    return at;
}

qsizetype endOfToken(const QString &text, qsizetype at)
{
    while (at < text.size() && !text[at].isSpace())
        ++at;
    return at;
}

/// Only its words from the first to the last of them, with what is attached to these, such as a bracket.
Line cutTo(const Line &line, qsizetype first, qsizetype last)
{
    if (first > last)
        return {};
    const Word &end = line.words[last];
    const qsizetype from = beginOfToken(line.text, line.words[first].start);
    Line kept = line;
    kept.text = line.text.sliced(from, endOfToken(line.text, end.start + end.text.size()) - from);
    kept.words = line.words.sliced(first, last - first + 1);
    for (Word &word : kept.words)
        word.start -= from;
    kept.box.setLeft(kept.words.first().box.left());
    kept.box.setRight(kept.words.last().box.right());
    return kept;
}

double letterWidth(const Word &word)
{
    return word.box.width() / static_cast<double>(std::max(word.text.size(), qsizetype{1}));
}

/// A word and the line that it stands in.
struct Place {
    const Line *line;
    qsizetype index;

    const Word &word() const { return line->words[index]; }
    /// Where what is attached to it ends, such as a full stop, by the width of its letters.
    double end() const
    {
        const qsizetype after = word().start + word().text.size();
        return word().box.right()
            + letterWidth(word()) * static_cast<double>(endOfToken(line->text, after) - after);
    }
};

bool areNeighbours(const Place &left, const Place &right)
{
    return right.word().box.left() - left.end()
        <= widestBlank * std::max(letterWidth(left.word()), letterWidth(right.word()));
}

/// Without an outermost word so near the edge that it may be cut between two of its letters. A line of one
/// word is then known by its place alone.
Line withoutDoubtfulWord(const Line &line, Side side)
{
    if (!goesOn(line, side) || line.words.isEmpty())
        return line;
    const Word &word = outermost(line, side);
    const double room = side == Side::left ? word.box.left() : 1 - word.box.right();
    if (room > letterWidth(word))
        return line;
    if (line.words.size() > 1)
        return side == Side::left ? cutTo(line, 1, line.words.size() - 1)
                                  : cutTo(line, 0, line.words.size() - 2);
    Line place = line;
    place.text.clear();
    place.words.clear();
    return place;
}

/// The words of `line` that follow the known ones outward without a wide gap.
Line beyond(const Line &line, const Line &known, Side side)
{
    if (known.words.isEmpty())
        return line;
    const bool isLeft = side == Side::left;
    const qsizetype count = line.words.size();
    const auto at = [&](qsizetype i) { return Place{.line = &line, .index = isLeft ? count - 1 - i : i}; };
    Place inner{.line = &known, .index = isLeft ? 0 : known.words.size() - 1};
    const Word last = inner.word();
    const auto isFarther = [&](const Word &word) {
        if (word.text == last.text && overlap(word.box, last.box))
            return false;
        const double middle = word.box.center().x();
        return isLeft ? middle < last.box.left() : middle > last.box.right();
    };
    qsizetype first = 0; // counted outward
    while (first < count && !isFarther(at(first).word()))
        ++first;
    qsizetype end = first;
    while (end < count && (isLeft ? areNeighbours(at(end), inner) : areNeighbours(inner, at(end))))
        inner = at(end++);
    return isLeft ? cutTo(line, count - end, count - 1 - first) : cutTo(line, first, end - 1);
}

Line chained(Line first, Line second)
{
    if (first.words.isEmpty() || second.words.isEmpty())
        return first.words.isEmpty() ? second : first;
    for (Word &word : second.words)
        word.start += first.text.size() + 1;
    return {.text = first.text + u' ' + second.text,
        .box = first.box.united(second.box),
        .words = first.words + second.words,
        .goesOnLeft = first.goesOnLeft,
        .goesOnRight = second.goesOnRight};
}

/// How far outward the line is known; nothing of it is, where it has no words.
double knownEdge(const Line &line, Side side)
{
    const bool isLeft = side == Side::left;
    if (line.words.isEmpty())
        return isLeft ? line.box.right() : line.box.left();
    const QRectF &last = outermost(line, side).box;
    return isLeft ? last.left() : last.right();
}

} // namespace

std::optional<QRectF> ScreenOCR::restOf(const QList<Line> &lines, QPointF cursor, Side side, double width)
{
    const QList<Line> paragraph = paragraphAt(lines, cursor);
    // The last line of a paragraph may end before the picture begins.
    const double below = side == Side::left ? lastRowReach : rowReach;
    std::optional<double> from;
    double bottom = HUGE_VAL;
    double top = -HUGE_VAL;
    for (const Line &line : paragraph) {
        bottom = std::min(bottom, line.box.top() - line.box.height() * below);
        top = std::max(top, line.box.bottom() + line.box.height() * rowReach);
        if (!goesOn(line, side))
            continue;
        const double known = knownEdge(line, side);
        from = side == Side::left ? std::max(from.value_or(known), known)
                                  : std::min(from.value_or(known), known);
    }
    if (!from)
        return std::nullopt;
    return QRectF(side == Side::left ? *from - width : *from, bottom, width, top - bottom);
}

QList<Line> ScreenOCR::withoutDoubtfulWords(QList<Line> lines, Side side)
{
    std::ranges::transform(
        lines, lines.begin(), [side](const Line &line) { return withoutDoubtfulWord(line, side); });
    return lines;
}

QList<Line> ScreenOCR::joined(QList<Line> lines, QList<Line> beside, Side side)
{
    std::ranges::stable_sort(beside, [side](const Line &a, const Line &b) {
        return side == Side::left ? a.box.right() > b.box.right() : a.box.left() < b.box.left();
    });
    QRectF grown;
    QList<Line> alone;
    for (const Line &piece : beside) {
        const auto known = std::ranges::find_if(lines, [&](const Line &line) {
            return areInOneRow(line, piece) && goesOn(line, side)
                && (!line.words.isEmpty() || overlap(line.box, piece.box));
        });
        if (known == lines.end()) {
            alone.append(piece);
            continue;
        }
        const Line rest = beyond(piece, *known, side);
        if (rest.words.isEmpty())
            continue;
        *known = side == Side::left ? chained(rest, std::move(*known)) : chained(std::move(*known), rest);
        grown = grown.united(rest.box);
    }
    for (Line &line : alone) {
        line.goesOnLeft = line.goesOnRight = false; // the edges were those of another picture
        const bool isKnown = std::ranges::any_of(lines,
            [&](const Line &other) { return areInOneRow(line, other) && overlap(line.box, other.box); });
        if (!isKnown && overlap(line.box, grown))
            lines.append(line);
    }
    lines.removeIf([](const Line &line) { return line.text.isEmpty(); });
    return lines;
}

} // namespace nimbrelle
