#include "platform/linux/ocr/EngineText.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

constexpr double tallestCapital = 1.12; // of the tallest letter beside it
constexpr double widestGap = 0.9; // of the height of a capital

bool isBar(const EngineWord &word)
{
    return word.text == u"|";
}

/// The height of a capital on this line: that of the tallest letter that doesn't reach below it, or else half
/// as much again as a small one.
int capitalHeight(const EngineLine &line)
{
    int tall = 0;
    int small = 0;
    for (const EngineWord &word : line)
        for (std::size_t i = 0; i < word.unitBoxes.size(); ++i) {
            const QChar c = word.text.at(static_cast<qsizetype>(i));
            const int height = word.unitBoxes[i].height();
            if (c.isUpper() || QStringView(u"bdfhklt").contains(c))
                tall = std::max(tall, height);
            else if (QStringView(u"acemnorsuvwxz").contains(c))
                small = std::max(small, height);
        }
    return tall > 0 ? tall : small * 3 / 2;
}

bool startsLowerCase(const QString &text)
{
    const auto letter = std::ranges::find_if(text, [](QChar c) { return c.isLetter(); });
    return letter != text.end() && letter->isLower();
}

bool endsLowerCase(const QString &text)
{
    const auto letter = std::find_if(text.rbegin(), text.rend(), [](QChar c) { return c.isLetter(); });
    return letter != text.rend() && letter->isLower();
}

/// A missing neighbour is no obstacle: sentences begin with the pronoun.
bool isOrdinaryNeighbour(const EngineLine &line, std::size_t bar, std::size_t other, int height)
{
    if (other >= line.size())
        return true;
    const EngineWord &left = line[std::min(bar, other)];
    const EngineWord &right = line[std::max(bar, other)];
    return right.box.left() - left.box.right() <= widestGap * height
        && (other < bar ? endsLowerCase(left.text) : startsLowerCase(right.text));
}

} // namespace

void mendPronouns(EngineLine &line)
{
    static const QRegularExpression contraction(u"^\\|(?=['’](m|ve|d|ll)\\b)"_s);
    const int height = capitalHeight(line);
    for (std::size_t i = 0; i < line.size(); ++i) {
        EngineWord &word = line[i];
        word.text.replace(contraction, u"I"_s);
        if (isBar(word) && line.size() > 1 && word.box.height() <= tallestCapital * height
            && isOrdinaryNeighbour(line, i, i - 1, height) && isOrdinaryNeighbour(line, i, i + 1, height))
            word.text = u"I"_s;
    }
}

RecognizedLine recognizedLine(const EngineLine &line, QSize size)
{
    const double width = size.width();
    const double height = size.height();
    const auto normalized = [&](const QRect &box) {
        return QRectF(box.left() / width, (height - box.top() - box.height()) / height, box.width() / width,
            box.height() / height);
    };
    RecognizedLine made;
    for (const EngineWord &word : line) {
        if (!made.text.isEmpty()) {
            made.text += u' ';
            made.unitBoxes.append(QRectF());
            made.unitConfidences.append(100);
        }
        made.text += word.text;
        made.box |= normalized(word.box);
        for (const QRect &unit : word.unitBoxes)
            made.unitBoxes.append(normalized(unit));
        made.unitConfidences.append(QList<double>(word.text.size(), word.confidence));
    }
    return made;
}

} // namespace nimbrelle
