#include "main/SelfTestAI.h"

#include "frame/Failure.h"
#include "frame/Text.h"
#include "notebook/WordStore.h"

#include <QTextStream>

using namespace Qt::StringLiterals;

namespace nimbrelle::SelfTest {

namespace {

struct Selection {
    QString text;
    QString surroundings;
};

QList<Selection> samples()
{
    return {
        {u"ran"_s, u"He ran to the store yesterday before it closed."_s},
        {u"running"_s, u"The server has been running for three days without a restart."_s},
        {u"faster"_s, u"ngl the new build is way faster than the old one."_s},
        {u"deprecated"_s, u"This API was deprecated in version 2.0."_s},
        {u"unbelievable"_s, u"The graphics in this game are unbelievable."_s},
        {u"decision"_s, u"Honestly that was the best decision I made this year."_s},
        {u"karma"_s, u"u/someone_ someone 703K karma Follow Chat Joined 2019"_s},
    };
}

QString orDash(const std::optional<QString> &text)
{
    return text.value_or(u"-"_s);
}

QString truth(const std::optional<bool> &value)
{
    return value == true ? u"true"_s : u"false"_s;
}

QString failureLine(const QString &query, const std::exception &failure)
{
    const auto *ours = dynamic_cast<const Failure *>(&failure);
    return u"「%1」出错：%2"_s.arg(query, ours ? ours->text() : QString::fromUtf8(failure.what()));
}

void print(const QString &query, const LookupResult &result, QTextStream &out)
{
    const Explanation &explanation = result.explanation;
    out << u"「%1」→ %2 %3 %4 | 纠正=%5"_s.arg(query, explanation.headword, orDash(explanation.phonetic),
        explanation.meaningZh, truth(result.corrected))
        << Qt::endl;
    out << u"   这是什么："_s << orDash(result.aboutZh) << Qt::endl;
    out << u"   "_s << orDash(explanation.definitionEn) << u" / "_s << orDash(explanation.sentence)
        << Qt::endl;
    QStringList others;
    for (const auto &other : result.alternatives.value_or(QList<LookupResult::Alternative>()))
        others.append(u"%1（%2）"_s.arg(other.text, other.meaningZh));
    if (!others.isEmpty())
        out << u"   其他说法："_s << others.join(u'；') << Qt::endl;
}

QString formsText(const Explanation &explanation)
{
    QStringList forms;
    for (const auto &[kind, form] : explanation.allForms())
        forms.append(label(kind) + u' ' + form);
    return forms.join(u"，"_s);
}

QString affixText(const Explanation &explanation)
{
    QStringList affixes;
    for (const Affix affix : explanation.affixList())
        affixes.append(displayForm(affix));
    return affixes.join(u' ');
}

void print(const QString &selection, const Explanation &explanation, QTextStream &out)
{
    out << u"「%1」→ %2 %3 %4 %5 | %6 %7"_s.arg(selection, explanation.headword, orDash(explanation.phonetic),
        orDash(explanation.pos), explanation.meaningZh, orDash(explanation.register_),
        orDash(explanation.registerNoteZh))
        << Qt::endl;
    out << u"   "_s << orDash(explanation.definitionEn) << Qt::endl;
    out << u"   %1 / %2 | AI 写的：%3"_s.arg(
        orDash(explanation.sentence), orDash(explanation.sentenceZh), truth(explanation.sentenceIsExample))
        << Qt::endl;
    out << u"   原文形式：%1（%2） | 语法：%3 %4"_s.arg(orDash(explanation.surfaceForm),
        orDash(explanation.formKind), orDash(explanation.grammar), orDash(explanation.grammarNoteZh))
        << Qt::endl;
    out << u"   全部形式："_s << formsText(explanation) << Qt::endl;
    out << u"   词根：%1 | 词缀：%2 原始：%3"_s.arg(orDash(explanation.familyRoot), affixText(explanation),
        explanation.affixes.value_or(QStringList()).join(u' '))
        << Qt::endl;
}

} // namespace

QCoro::Task<> runLookup(std::unique_ptr<AIClient> client, QTextStream &out)
{
    const QStringList queries{u"Hotel Califonil"_s, u"放弃"_s, u"canva"_s};
    for (const QString &query : queries) {
        try {
            const LookupResult result = co_await client->lookup(query);
            print(query, result, out);
        } catch (const std::exception &failure) {
            out << failureLine(query, failure) << Qt::endl;
        }
    }
}

QCoro::Task<> runExplain(std::unique_ptr<AIClient> client, QTextStream &out)
{
    const QList<Selection> selections = samples();
    for (const Selection &selection : selections) {
        try {
            const Explanation explanation = co_await client->explain(selection.text, selection.surroundings);
            print(selection.text, explanation, out);
        } catch (const std::exception &failure) {
            out << failureLine(selection.text, failure) << Qt::endl;
        }
    }
}

QCoro::Task<> addSpelling(QString words, std::unique_ptr<AIClient> client, WordStore &store, QTextStream &out)
{
    const QStringList pieces = words.split(u'|');
    for (const QString &untrimmed : pieces) {
        const QString piece = trimmedBlanks(untrimmed);
        if (piece.isEmpty())
            continue;
        try {
            const LookupResult result = co_await client->lookup(piece);
            const WordEntry added = store.addSpellPractice(result.explanation);
            out << u"已加入常拼：%1 → %2（%3）"_s.arg(piece, added.headword, added.meaningZh) << Qt::endl;
        } catch (const std::exception &failure) {
            out << failureLine(piece, failure) << Qt::endl;
        }
    }
}

} // namespace nimbrelle::SelfTest
