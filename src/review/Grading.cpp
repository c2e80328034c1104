#include "review/Grading.h"

#include "review/Letters.h"

#include <algorithm>
#include <numeric>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype minFuzzyLength = 4;

bool isEdge(const QString &character)
{
    const auto codePoints = character.toUcs4();
    return std::all_of(codePoints.begin(), codePoints.end(),
        [](uint point) { return QChar::isSpace(point) || QChar::isPunct(point); });
}

// Without white space and punctuation at both ends, whole characters at a time.
QString trimmedEdges(const QString &text)
{
    QStringList letters = characters(text);
    while (!letters.isEmpty() && isEdge(letters.last()))
        letters.removeLast();
    const auto first = std::find_if_not(letters.cbegin(), letters.cend(), isEdge);
    return letters.mid(first - letters.cbegin()).join(QString());
}

QString withPlainApostrophes(QString text)
{
    return text.replace(u'’', u'\'');
}

QString normalized(const QString &text)
{
    return withPlainApostrophes(Letters::folded(trimmedEdges(text)));
}

std::optional<QString> capitalsNote(const QString &input, const QString &answer)
{
    const auto comparable = [](const QString &text) {
        return withPlainApostrophes(text.normalized(QString::NormalizationForm_C));
    };
    const QString typed = comparable(trimmedEdges(input)), wanted = comparable(answer);
    if (typed == wanted || wanted == wanted.toLower())
        return std::nullopt;
    return u"注意大写："_s + answer;
}

Grade rightAnswer(const std::optional<QString> &note, qint64 hintsUsed)
{
    if (hintsUsed < 1)
        return {.rating = Rating::good, .message = note};
    const QString helped = u"用了 %1 次提示，也算拼出来了"_s.arg(hintsUsed);
    return {.rating = Rating::hard, .message = note ? helped + u"。"_s + *note : helped};
}

// A slip that still shows that the word is known; short words leave too much to chance.
std::optional<QString> slip(const QString &typed, const QString &expected, const QString &answer)
{
    if (characterCount(expected) < minFuzzyLength)
        return std::nullopt;
    if (editDistance(typed, expected) < 2)
        return u"差一个字母"_s;
    if (isAdjacentSwap(typed, expected))
        return u"有两个字母顺序反了："_s + answer;
    return std::nullopt;
}

} // namespace

Grade grade(const QString &input, const ReviewQuestion &question, qint64 hintsUsed)
{
    const QString typed = normalized(input);
    const QString expected = normalized(question.answer);
    if (typed.isEmpty())
        return {.rating = Rating::again, .message = u"没关系，跟着打一遍就好"_s};
    if (typed == expected)
        return rightAnswer(capitalsNote(input, question.answer), hintsUsed);
    const auto hint = question.formHint();
    if (hint && typed == normalized(question.entry.headword))
        return {.rating = Rating::hard, .message = u"意思对了！不过这里%1：%2"_s.arg(*hint, question.answer)};
    if (const auto remark = slip(typed, expected, question.answer))
        return {.rating = Rating::hard, .message = remark};
    return {.rating = Rating::again, .message = u"跟着打一遍，手会记住它"_s};
}

qint64 editDistance(const QString &a, const QString &b)
{
    const QStringList from = characters(a), to = characters(b);
    QList<qint64> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 1; i <= from.size(); ++i) {
        qint64 diagonal = std::exchange(row[0], i);
        for (qsizetype j = 1; j <= to.size(); ++j) {
            const qint64 substituted = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({substituted, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row.last();
}

bool isAdjacentSwap(const QString &a, const QString &b)
{
    const QStringList from = characters(a), to = characters(b);
    if (from.size() != to.size())
        return false;
    const auto [first, other] = std::mismatch(from.begin(), from.end(), to.begin());
    const qsizetype i = first - from.begin();
    return i + 1 < from.size() && from[i] == to[i + 1] && from[i + 1] == to[i] && from[i] != from[i + 1]
        && from.mid(i + 2) == to.mid(i + 2);
}

std::optional<QString> withNextLetter(const QString &input, const QString &answer)
{
    const QStringList given = characters(input), wanted = characters(answer);
    const auto [end, other] =
        std::mismatch(wanted.begin(), wanted.end(), given.begin(), given.end(), Letters::isSame);
    const qsizetype common = end - wanted.begin();
    if (common >= wanted.size())
        return std::nullopt;
    return wanted.mid(0, common + 1).join(QString());
}

} // namespace nimbrelle
