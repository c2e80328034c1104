#include "main/SelfTestReview.h"

#include "frame/AppConfig.h"
#include "frame/RecordCodec.h"
#include "frame/Text.h"
#include "notebook/WordStore.h"
#include "review/FSRS.h"
#include "review/Grading.h"
#include "review/SpellingScaffold.h"

#include <QTextStream>

#include <algorithm>

namespace nimbrelle::SelfTest {

using namespace Qt::StringLiterals;

namespace {

WordEntry sampleWord(const QString &headword)
{
    WordEntry entry;
    entry.id = QUuid::createUuid();
    entry.headword = headword;
    return entry;
}

QString verdictOf(const QString &input, const ReviewQuestion &question, qint64 hintsUsed)
{
    const Grade verdict = grade(input, question, hintsUsed);
    return u"「%1」→ %2 %3"_s.arg(input, caseText(verdict.rating), verdict.message.value_or(u"（无提示）"_s));
}

void printGrades(const ReviewQuestion &question, const QStringList &inputs, QTextStream &out)
{
    for (const QString &input : inputs)
        out << verdictOf(input, question, 0) << Qt::endl;
}

void printHinted(const QString &input, const ReviewQuestion &question, qint64 hintsUsed, QTextStream &out)
{
    out << u"提示 %1 次："_s.arg(hintsUsed) << verdictOf(input, question, hintsUsed) << Qt::endl;
}

void printLetters(const QString &answer, QTextStream &out)
{
    QStringList steps;
    for (auto given = withNextLetter(QString(), answer); given; given = withNextLetter(*given, answer))
        steps.append(*given);
    out << u"送字母："_s << steps.join(u" → "_s) << Qt::endl;
}

void printInflected(QTextStream &out)
{
    WordEntry run = sampleWord(u"run"_s);
    run.spellLevel = 3;
    run.inflections = {{u"past"_s, u"ran"_s}};
    run.examples = {{QUuid::createUuid(), u"He ran home yesterday."_s, u"他昨天跑回家了。"_s, u"跑"_s, false,
        {}, {}, {}, Timestamp{}}};
    const ReviewQuestion question = ReviewQuestion::spelling(run);
    out << u"题目：%1（答案 %2）"_s.arg(question.clozeSentence.value_or(QString()), question.answer)
        << Qt::endl;
    printGrades(question, {u"ran"_s, u"Ran."_s, u"run"_s, u"rann"_s, u"walk"_s, QString()}, out);
    printLetters(question.answer, out);
    printHinted(question.answer, question, 1, out);
}

void printPriorities(const WordStore &store, const AppConfig &config, Timestamp now, QTextStream &out)
{
    QList<std::pair<double, WordEntry>> ranked;
    for (const WordEntry &entry : store.entries())
        ranked.append({entry.priority(config, now), entry});
    std::stable_sort(
        ranked.begin(), ranked.end(), [](const auto &a, const auto &b) { return a.first > b.first; });
    constexpr qsizetype topCount = 5;
    QStringList top;
    for (const auto &[priority, entry] : std::as_const(ranked)) {
        out << u"优先级 %1：%2（查 %3 次，%4 天）"_s.arg(entry.headword, QString::number(priority, 'f', 1),
            QString::number(entry.lookupCount), QString::number(entry.days().size()))
            << Qt::endl;
        if (top.size() < topCount)
            top.append(entry.headword);
    }
    out << u"你的生词本：%1 个词；排在最前面的：%2"_s.arg(QString::number(ranked.size()), top.join(u'、'))
        << Qt::endl;
}

struct ScaffoldSample {
    QString word;
    QList<Affix> affixes;
};

struct Trace {
    QString name;
    QList<Rating> answers;
};

QString traceSteps(const QList<Rating> &answers)
{
    QStringList steps;
    std::optional<ReviewState> state;
    Timestamp now{};
    const auto rounded = [](double value) { return QString::number(value, 'f', 1); };
    for (const Rating answer : answers) {
        state = FSRS::review(state, answer, now, 0.9);
        steps.append(u"%1→%2天(S=%3,D=%4,L%5)"_s.arg(caseText(answer), rounded(daysBetween(now, state->due)),
            rounded(state->stability), rounded(state->difficulty), QString::number(state->level)));
        now = state->due;
    }
    return steps.join(u' ');
}

} // namespace

void runReview(const WordStore &store, const AppConfig &config, Timestamp now, QTextStream &out)
{
    printInflected(out);
    printPriorities(store, config, now, out);
}

void runSpelling(QTextStream &out)
{
    const ScaffoldSample samples[]{{u"reluctant"_s, {}}, {u"unbelievable"_s, {Affix::un, Affix::able}},
        {u"decision"_s, {Affix::tion}}, {u"deprecate"_s, {}}, {u"kubernetes"_s, {}}, {u"comment"_s, {}},
        {u"give up on"_s, {}}, {u"ngl"_s, {}}};
    for (const auto &[word, affixes] : samples) {
        const qint64 blanks = characterCount(word) < 6 ? 1 : 2;
        out << u"%1：音节 %2 | 补字母 %3 | 按块 %4"_s.arg(word, SpellingScaffold::syllables(word).join(u'·'),
            SpellingScaffold::fillPattern(word, blanks),
            SpellingScaffold::chunkPattern(word, affixes).value_or(u"（分不了，退回补字母）"_s))
            << Qt::endl;
    }
}

void runSpellPractice(QTextStream &out)
{
    const ReviewQuestion name = ReviewQuestion::spelling(sampleWord(u"Claude"_s));
    printGrades(name, {u"Claude"_s, u"claude"_s, u"Cluade"_s, u"Claud"_s, QString()}, out);
    printHinted(u"claude"_s, name, 2, out);
    const ReviewQuestion song = ReviewQuestion::spelling(sampleWord(u"Hotel California"_s));
    printGrades(song, {u"Hotel California"_s, u"hotel california"_s, u"Hotel Califonil"_s}, out);
}

void runFSRS(QTextStream &out)
{
    using enum Rating;
    const Trace traces[]{{u"一直答对"_s, {good, good, good, good, good}},
        {u"开头很简单"_s, {easy, easy, good}}, {u"中间忘了"_s, {good, good, again, good, good}},
        {u"总是费劲"_s, {hard, hard, hard, hard}}};
    for (const auto &[name, answers] : traces)
        out << name << u"："_s << traceSteps(answers) << Qt::endl;
}

} // namespace nimbrelle::SelfTest
