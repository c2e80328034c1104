#include "frame/WordPattern.h"

#include "frame/Text.h"

#include <algorithm>

namespace nimbrelle::WordPattern {

using namespace Qt::StringLiterals;

namespace {

const QString wordCharacter = u"[\\p{L}\\p{M}\\p{N}\\p{Pc}]"_s;
const QString boundary = u"(?:(?<=%1)(?!%1)|(?<!%1)(?=%1))"_s.arg(wordCharacter);

QRegularExpression expressionOf(const QString &pattern)
{
    return QRegularExpression(
        pattern, QRegularExpression::UseUnicodePropertiesOption | QRegularExpression::CaseInsensitiveOption);
}

QString escaped(const QString &text, Blanks blanks)
{
    if (blanks == Blanks::asWritten)
        return QRegularExpression::escape(text);
    QStringList pieces = text.split(u' ');
    for (QString &piece : pieces)
        piece = QRegularExpression::escape(piece);
    return pieces.join(u"\\s+"_s);
}

bool isWordCharacter(char32_t character)
{
    return QChar::isLetterOrNumber(character) || QChar::isMark(character)
        || QChar::category(character) == QChar::Punctuation_Connector;
}

char32_t characterBefore(QStringView text, qsizetype at)
{
    if (at >= 2 && text[at - 1].isLowSurrogate() && text[at - 2].isHighSurrogate())
        return QChar::surrogateToUcs4(text[at - 2], text[at - 1]);
    return at > 0 ? text[at - 1].unicode() : U' ';
}

char32_t characterAt(QStringView text, qsizetype at)
{
    if (at + 1 < text.size() && text[at].isHighSurrogate() && text[at + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(text[at], text[at + 1]);
    return at < text.size() ? text[at].unicode() : U' ';
}

bool isWithinAWord(QStringView text, qsizetype at)
{
    return isWordCharacter(characterBefore(text, at)) && isWordCharacter(characterAt(text, at));
}

} // namespace

QRegularExpression whole(const QString &text, Blanks blanks)
{
    return expressionOf(boundary + escaped(text, blanks) + boundary);
}

QRegularExpression beginningWith(const QString &stem)
{
    return expressionOf(boundary + QRegularExpression::escape(stem) + wordCharacter + u'*');
}

QStringList longestFirst(QStringList words)
{
    words.removeDuplicates();
    words.removeAll(QString());
    std::stable_sort(words.begin(), words.end(),
        [](const QString &a, const QString &b) { return characterCount(a) > characterCount(b); });
    return words;
}

std::optional<TextRange> firstMatch(const QRegularExpression &expression, const QString &text)
{
    if (!expression.isValid())
        return std::nullopt;
    auto matches = expression.globalMatch(text);
    while (matches.hasNext()) {
        const auto match = matches.next();
        if (isBetweenCharacters(text, match.capturedStart())
            && isBetweenCharacters(text, match.capturedEnd()))
            return TextRange{match.capturedStart(), match.capturedLength()};
    }
    return std::nullopt;
}

QList<TextRange> allOccurrences(const QString &text, const QStringList &terms)
{
    QList<TextRange> ranges;
    for (const QString &each : terms) {
        const QString term = each.trimmed();
        if (term.isEmpty())
            continue;
        for (qsizetype at = text.indexOf(term, 0, Qt::CaseInsensitive); at >= 0;
             at = text.indexOf(term, at + term.size(), Qt::CaseInsensitive))
            ranges.append({.start = at, .length = term.size()});
    }
    return ranges;
}

QList<TextRange> wholeOccurrences(const QString &text, const QStringList &terms)
{
    QList<TextRange> ranges = allOccurrences(text, terms);
    ranges.removeIf([&text](const TextRange &range) {
        const qsizetype end = range.start + range.length;
        return isWithinAWord(text, range.start) || isWithinAWord(text, end)
            || !isBetweenCharacters(text, range.start) || !isBetweenCharacters(text, end);
    });
    std::ranges::sort(ranges, [](const TextRange &a, const TextRange &b) {
        return a.start != b.start ? a.start < b.start : a.length > b.length;
    });
    qsizetype end = 0;
    ranges.removeIf([&end](const TextRange &range) {
        const bool isCovered = range.start < end;
        end = isCovered ? end : range.start + range.length;
        return isCovered;
    });
    return ranges;
}

} // namespace nimbrelle::WordPattern
