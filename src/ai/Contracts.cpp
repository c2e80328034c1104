#include "ai/Contracts.h"

#include "frame/Text.h"
#include "notebook/WordEntry.h"

using namespace Qt::StringLiterals;

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
    return u"Selection: "_s + selection + u"\nSurrounding text: "_s
        + (hasContext ? firstCharacters(*context, contextCharacters) : u"(none)"_s);
}

QString lookupMessage(const QString &query)
{
    return u"Query: "_s + firstCharacters(query, queryCharacters);
}

QString translateMessage(const QString &text)
{
    return firstCharacters(text, translatedCharacters);
}

QString mnemonicMessage(const WordEntry &word, const QStringList &knownWords, const QStringList &interests)
{
    QString message = u"要记的词："_s + word.headword + u'（' + word.pos + u' ' + word.meaningZh + u'）';
    const QString sentence = lastSentence(word);
    if (!sentence.isEmpty())
        message += u"\n他遇到它的句子："_s + sentence;
    if (word.familyRoot)
        message += u"\n词根："_s + *word.familyRoot;
    if (word.affixes && !word.affixes->isEmpty())
        message += u"\n词缀："_s + displayForms(*word.affixes).join(u' ');
    if (!knownWords.isEmpty())
        message += u"\n他已经掌握的词："_s + knownWords.join(u", "_s);
    if (!interests.isEmpty())
        message += u"\n他常看的网站和内容："_s + interests.join(u'；');
    return message;
}

} // namespace nimbrelle
