#include "screen/ScreenOCR.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace nimbrelle {

using Line = ScreenOCR::Line;
using Word = ScreenOCR::Word;
using Marked = ScreenOCR::Marked;

namespace {

constexpr double rowReach = 0.5; // of a line's height
constexpr double usualBlank = 0.02; // a neighbour is no farther off than the hidden text's width and this
constexpr double realGap = 0.5; // of the width that the hidden text needs
constexpr double usualLetter = 0.012; // where no letter is there to be measured

/// A word of the row in which the marked text stands.
struct Place {
    qsizetype line;
    Word word;

    double middle() const { return word.box.center().x(); }
};

QString lettersOf(QStringView text)
{
    QString letters;
    for (const QChar c : text)
        if (c.isLetterOrNumber() || c.isSurrogate())
            letters += c.toLower();
    return letters;
}

QStringList wordsOf(const QString &text)
{
    QStringList words;
    for (const TextRange &range : ScreenOCR::wordRanges(text))
        words.append(lettersOf(QStringView(text).sliced(range.start, range.length)));
    return words;
}

/// Absent only where there is no line.
const Line *lineAtHeight(const QList<Line> &lines, double y)
{
    const auto distance = [y](const Line &line) {
        return std::max({line.box.top() - y, y - line.box.bottom(), 0.0});
    };
    const auto nearest = std::min_element(
        lines.begin(), lines.end(), [&](const Line &a, const Line &b) { return distance(a) < distance(b); });
    if (nearest == lines.end() || distance(*nearest) > rowReach * nearest->box.height())
        return nullptr;
    return &*nearest;
}

std::vector<Place> rowAt(const QList<Line> &lines, double y)
{
    std::vector<Place> row;
    const Line *anchor = lineAtHeight(lines, y);
    for (qsizetype i = 0; anchor && i < lines.size(); ++i)
        if (std::abs(lines[i].box.center().y() - anchor->box.center().y()) <= rowReach * anchor->box.height())
            for (const Word &word : lines[i].words)
                row.push_back({.line = i, .word = word});
    return row;
}

double letterWidth(const std::vector<Place> &row)
{
    double width = 0;
    qsizetype letters = 0;
    for (const Place &place : row) {
        width += place.word.box.width();
        letters += place.word.text.size();
    }
    return letters > 0 && width > 0 ? width / static_cast<double>(letters) : usualLetter;
}

const Place *lastBefore(const std::vector<Place> &row, double x)
{
    const Place *last = nullptr;
    for (const Place &place : row)
        if (place.middle() < x && (!last || place.word.box.right() > last->word.box.right()))
            last = &place;
    return last;
}

const Place *firstAfter(const std::vector<Place> &row, double x)
{
    const Place *first = nullptr;
    for (const Place &place : row)
        if (place.middle() > x && (!first || place.word.box.left() < first->word.box.left()))
            first = &place;
    return first;
}

/// How many letters must be changed, added or left out to make one text of the other.
qsizetype editsBetween(const QString &a, const QString &b)
{
    std::vector<qsizetype> edits(static_cast<std::size_t>(b.size()) + 1);
    std::iota(edits.begin(), edits.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        qsizetype diagonal = std::exchange(edits[0], i + 1);
        for (std::size_t j = 1; j < edits.size(); ++j) {
            const qsizetype change = diagonal + (a[i] == b[static_cast<qsizetype>(j) - 1] ? 0 : 1);
            diagonal = edits[j];
            edits[j] = std::min({change, edits[j] + 1, edits[j - 1] + 1});
        }
    }
    return edits.back();
}

bool areAlike(const QString &read, const QString &marked)
{
    const QString a = lettersOf(read);
    const QString b = lettersOf(marked);
    return editsBetween(a, b) <= std::max(qsizetype{1}, b.size() / 3);
}

/// What the engine made of the marked text: the words that were dragged over, or the one that was clicked.
std::vector<Place> misreadIn(const std::vector<Place> &row, const Marked &marked, double width)
{
    const double left = std::min(marked.from.x(), marked.to.x());
    const double right = std::max(marked.from.x(), marked.to.x());
    std::vector<Place> misread;
    for (const Place &place : row)
        if (place.middle() > left && place.middle() < right)
            misread.push_back(place);
    if (!misread.empty())
        return misread;
    const double x = marked.middle().x();
    for (const Place &place : row) {
        const QRectF &box = place.word.box;
        if (x < box.left() || x > box.right())
            continue;
        const Place *before = lastBefore(row, place.middle());
        const Place *after = firstAfter(row, place.middle());
        const bool isTight = (!before || box.left() - before->word.box.right() < realGap * width)
            && (!after || after->word.box.left() - box.right() < realGap * width);
        if (isTight || areAlike(place.word.text, marked.text))
            return {place};
    }
    return misread;
}

void replace(QList<Line> &lines, const std::vector<Place> &misread, const QString &text)
{
    const auto first = std::min_element(misread.begin(), misread.end(),
        [](const Place &a, const Place &b) { return a.word.box.left() < b.word.box.left(); });
    for (auto place = misread.rbegin(); place != misread.rend(); ++place) {
        Line &line = lines[place->line];
        const bool isFirst = place->line == first->line && place->word.start == first->word.start;
        line.text.replace(place->word.start, place->word.text.size(), isFirst ? text : QString());
    }
    for (const Place &place : misread)
        lines[place.line].text = lines[place.line].text.simplified();
}

/// Beside a word and what is attached to it, such as a comma.
void insertBeside(Line &line, const Word &word, bool isAfter, const QString &text)
{
    qsizetype at = isAfter ? word.start + word.text.size() : word.start;
    while (
        isAfter ? at < line.text.size() && !line.text[at].isSpace() : at > 0 && !line.text[at - 1].isSpace())
        at += isAfter ? 1 : -1;
    line.text.insert(at, isAfter ? u' ' + text : text + u' ');
}

bool insertIntoGap(QList<Line> &lines, const std::vector<Place> &row, const Marked &marked, double width)
{
    const double x = marked.middle().x();
    const Place *before = lastBefore(row, x);
    const Place *after = firstAfter(row, x);
    const double toLeft = before ? x - before->word.box.right() : HUGE_VAL;
    const double toRight = after ? after->word.box.left() - x : HUGE_VAL;
    if (std::min(toLeft, toRight) > width + usualBlank)
        return false;
    const bool isAfter = toLeft <= toRight;
    const Place &neighbour = isAfter ? *before : *after;
    Line &line = lines[neighbour.line];
    insertBeside(line, neighbour.word, isAfter, marked.text);
    line.box.setLeft(std::min(line.box.left(), x)); // so that this is the line at the marked text
    line.box.setRight(std::max(line.box.right(), x));
    return true;
}

/// The bar of the text cursor stands right beside what was marked, and reads as a letter.
bool hasCursorBeside(const QString &read, const QString &marked)
{
    const QStringView bars = u"li1";
    return read.size() == marked.size() + 1
        && ((read.startsWith(marked) && bars.contains(read.back()))
            || (read.endsWith(marked) && bars.contains(read.front())));
}

} // namespace

bool ScreenOCR::hasMarked(const QList<Line> &lines, const Marked &marked)
{
    const auto round = analyze(lines, marked.middle(), Seek::contextOnly);
    const QStringList wanted = wordsOf(marked.text);
    if (!round)
        return false;
    const QStringList there = wordsOf(round->context);
    if (wanted.size() != 1)
        return there.join(QString()).contains(wanted.join(QString()));
    if (there.contains(wanted.first()))
        return true;
    const auto under = analyze(lines, marked.middle(), Seek::word); // of which a part may be marked
    const QString read = under ? lettersOf(under->word.value_or(QString())) : QString();
    return read.contains(wanted.first()) && !hasCursorBeside(read, wanted.first());
}

QList<Line> ScreenOCR::withMarked(QList<Line> lines, const Marked &marked)
{
    const QPointF at = marked.middle();
    const std::vector<Place> row = rowAt(lines, at.y());
    const double width = letterWidth(row) * static_cast<double>(marked.text.size());
    const std::vector<Place> misread = misreadIn(row, marked, width);
    if (!misread.empty()) {
        replace(lines, misread, marked.text);
    } else if (!insertIntoGap(lines, row, marked, width)) {
        const double height = lines.isEmpty() ? 0 : lines.first().box.height();
        lines.append({.text = marked.text,
            .box = {at.x() - width / 2, at.y() - height / 2, width, height},
            .words = {}});
    }
    return lines;
}

} // namespace nimbrelle
