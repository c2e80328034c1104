#include "screen/SelectionKind.h"

#include "frame/Text.h"

#include <QList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr qsizetype maxTextLength = 4000;
constexpr qsizetype maxWordLength = 60;
constexpr qsizetype maxWords = 5;

using CodePoints = QList<uint>;

bool isHan(uint codePoint)
{
    return QChar::script(codePoint) == QChar::Script_Han;
}

// A combining mark counts as part of the letters, so that a decomposed accent is no symbol.
bool isLetter(uint codePoint)
{
    return QChar::isLetter(codePoint) || QChar::isMark(codePoint);
}

bool isPunctuation(uint codePoint)
{
    return QChar::isPunct(codePoint) || QChar::isSymbol(codePoint) || QChar::isSpace(codePoint);
}

bool isAddress(const QString &text)
{
    return text.contains(u"://"_s) || text.startsWith(u"www."_s);
}

bool isHandle(const QString &text)
{
    return text.contains(u'@') && !text.contains(u' ');
}

qsizetype wordCount(const QString &text)
{
    return text.simplified().count(u' ') + 1;
}

QString withoutPunctuation(const CodePoints &codePoints)
{
    const auto from = std::find_if_not(codePoints.begin(), codePoints.end(), isPunctuation);
    const auto to =
        std::find_if_not(codePoints.rbegin(), std::make_reverse_iterator(from), isPunctuation).base();
    QString text;
    std::for_each(from, to, [&text](uint codePoint) { text += QChar::fromUcs4(codePoint); });
    return text;
}

} // namespace

SelectionKind SelectionKind::classify(const QString &text)
{
    const QString trimmed = trimmedSpace(text);
    const qsizetype length = characterCount(trimmed);
    if (length == 0 || length > maxTextLength)
        return {};
    const CodePoints codePoints = trimmed.toUcs4();
    if (std::any_of(codePoints.begin(), codePoints.end(), isHan) || isAddress(trimmed) || isHandle(trimmed))
        return {};
    const auto letters = std::count_if(codePoints.begin(), codePoints.end(), isLetter);
    if (letters < 2 || letters * 2 <= length)
        return {};
    if (wordCount(trimmed) > maxWords || length > maxWordLength)
        return {.kind = Kind::passage, .text = trimmed};
    return {.kind = Kind::word, .text = withoutPunctuation(codePoints)}; // never empty: two letters are in it
}

} // namespace nimbrelle
