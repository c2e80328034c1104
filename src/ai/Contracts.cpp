#include "ai/Contracts.h"

#include "frame/Text.h"
#include "notebook/WordEntry.h"

namespace nimbrelle {

namespace {

constexpr qsizetype contextCharacters = 1500;
constexpr qsizetype queryCharacters = 200;
constexpr qsizetype translatedCharacters = 4000;

QString lastSentence(const WordEntry &word)
{
    return word.examples.isEmpty() ? QString() : word.examples.last().sentence;
}

} // namespace

QString explainMessage(const QString &selection, const std::optional<QString> &context)
{
    const bool hasContext = context && !context->isEmpty();
    return QStringLiteral("Selection: ") + selection + QStringLiteral("\nSurrounding text: ")
        + (hasContext ? firstCharacters(*context, contextCharacters) : QStringLiteral("(none)"));
}

QString lookupMessage(const QString &query)
{
    return QStringLiteral("Query: ") + firstCharacters(query, queryCharacters);
}

QString translateMessage(const QString &text)
{
    return firstCharacters(text, translatedCharacters);
}

QString mnemonicMessage(const WordEntry &word, const QStringList &knownWords, const QStringList &interests)
{
    QString message =
        QStringLiteral("要记的词：") + word.headword + u'（' + word.pos + u' ' + word.meaningZh + u'）';
    const QString sentence = lastSentence(word);
    if (!sentence.isEmpty())
        message += QStringLiteral("\n他遇到它的句子：") + sentence;
    if (word.familyRoot)
        message += QStringLiteral("\n词根：") + *word.familyRoot;
    if (word.affixes && !word.affixes->isEmpty())
        message += QStringLiteral("\n词缀：") + displayForms(*word.affixes).join(u' ');
    if (!knownWords.isEmpty())
        message += QStringLiteral("\n他已经掌握的词：") + knownWords.join(QStringLiteral(", "));
    if (!interests.isEmpty())
        message += QStringLiteral("\n他常看的网站和内容：") + interests.join(u'；');
    return message;
}

} // namespace nimbrelle
