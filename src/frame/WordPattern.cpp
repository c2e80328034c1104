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

} // namespace nimbrelle::WordPattern
