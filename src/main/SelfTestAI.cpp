#include "main/SelfTestAI.h"

#include "frame/Failure.h"
#include "frame/Text.h"
#include "notebook/WordStore.h"

#include <QTextStream>

namespace nimbrelle::SelfTest {

namespace {

struct Selection {
    QString text;
    QString surroundings;
};

QList<Selection> samples()
{
    return {
        {QStringLiteral("ran"), QStringLiteral("He ran to the store yesterday before it closed.")},
        {QStringLiteral("running"),
            QStringLiteral("The server has been running for three days without a restart.")},
        {QStringLiteral("faster"), QStringLiteral("ngl the new build is way faster than the old one.")},
        {QStringLiteral("deprecated"), QStringLiteral("This API was deprecated in version 2.0.")},
        {QStringLiteral("unbelievable"), QStringLiteral("The graphics in this game are unbelievable.")},
        {QStringLiteral("decision"), QStringLiteral("Honestly that was the best decision I made this year.")},
        {QStringLiteral("karma"), QStringLiteral("u/someone_ someone 703K karma Follow Chat Joined 2019")},
    };
}

QString orDash(const std::optional<QString> &text)
{
    return text.value_or(QStringLiteral("-"));
}

QString truth(const std::optional<bool> &value)
{
    return value == true ? QStringLiteral("true") : QStringLiteral("false");
}

QString failureLine(const QString &query, const std::exception &failure)
{
    const auto *ours = dynamic_cast<const Failure *>(&failure);
    return QStringLiteral("「%1」出错：%2")
        .arg(query, ours ? ours->text() : QString::fromUtf8(failure.what()));
}

void print(const QString &query, const LookupResult &result, QTextStream &out)
{
    const Explanation &explanation = result.explanation;
    out << QStringLiteral("「%1」→ %2 %3 %4 | 纠正=%5")
               .arg(query, explanation.headword, orDash(explanation.phonetic), explanation.meaningZh,
                   truth(result.corrected))
        << Qt::endl;
    out << QStringLiteral("   这是什么：") << orDash(result.aboutZh) << Qt::endl;
    out << QStringLiteral("   ") << orDash(explanation.definitionEn) << QStringLiteral(" / ")
        << orDash(explanation.sentence) << Qt::endl;
    QStringList others;
    for (const auto &other : result.alternatives.value_or(QList<LookupResult::Alternative>()))
        others.append(QStringLiteral("%1（%2）").arg(other.text, other.meaningZh));
    if (!others.isEmpty())
        out << QStringLiteral("   其他说法：") << others.join(u'；') << Qt::endl;
}

QString formsText(const Explanation &explanation)
{
    QStringList forms;
    for (const auto &[kind, form] : explanation.allForms())
        forms.append(label(kind) + u' ' + form);
    return forms.join(QStringLiteral("，"));
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
    out << QStringLiteral("「%1」→ %2 %3 %4 %5 | %6 %7")
               .arg(selection, explanation.headword, orDash(explanation.phonetic), orDash(explanation.pos),
                   explanation.meaningZh, orDash(explanation.register_), orDash(explanation.registerNoteZh))
        << Qt::endl;
    out << QStringLiteral("   ") << orDash(explanation.definitionEn) << Qt::endl;
    out << QStringLiteral("   %1 / %2 | AI 写的：%3")
               .arg(orDash(explanation.sentence), orDash(explanation.sentenceZh),
                   truth(explanation.sentenceIsExample))
        << Qt::endl;
    out << QStringLiteral("   原文形式：%1（%2） | 语法：%3 %4")
               .arg(orDash(explanation.surfaceForm), orDash(explanation.formKind),
                   orDash(explanation.grammar), orDash(explanation.grammarNoteZh))
        << Qt::endl;
    out << QStringLiteral("   全部形式：") << formsText(explanation) << Qt::endl;
    out << QStringLiteral("   词根：%1 | 词缀：%2 原始：%3")
               .arg(orDash(explanation.familyRoot), affixText(explanation),
                   explanation.affixes.value_or(QStringList()).join(u' '))
        << Qt::endl;
}

} // namespace

QCoro::Task<> runLookup(std::unique_ptr<AIClient> client, QTextStream &out)
{
    const QStringList queries{
        QStringLiteral("Hotel Califonil"), QStringLiteral("放弃"), QStringLiteral("canva")};
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
            out << QStringLiteral("已加入常拼：%1 → %2（%3）").arg(piece, added.headword, added.meaningZh)
                << Qt::endl;
        } catch (const std::exception &failure) {
            out << failureLine(piece, failure) << Qt::endl;
        }
    }
}

} // namespace nimbrelle::SelfTest
