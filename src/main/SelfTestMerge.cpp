#include "main/SelfTestMerge.h"

#include "notebook/SlotPlan.h"
#include "sync/BundleForm.h"
#include "sync/SyncMerge.h"

#include <QTextStream>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle::SelfTest {

namespace {

// Noon on a day of October 2026.
Timestamp day(int number)
{
    using namespace std::chrono;
    return sys_days{year{2026} / October / std::chrono::day{static_cast<unsigned>(number)}} + hours{12};
}

QUuid id(int number)
{
    return {static_cast<uint>(number), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
}

enum Ids {
    runWord = 1,
    computerApple,
    phoneApple,
    goneWord,
    everyDay,
    theTests,
    aShop,
    computerAppleADay,
    phoneAppleADay,
    applePie,
    computerPlural,
    phonePlural,
};

WordEntry word(int number, const QString &headword, Timestamp createdAt)
{
    WordEntry entry;
    entry.id = id(number);
    entry.headword = headword;
    entry.createdAt = createdAt;
    return entry;
}

Example example(int number, const QString &sentence, Timestamp addedAt)
{
    Example example;
    example.id = id(number);
    example.sentence = sentence;
    example.addedAt = addedAt;
    return example;
}

GrammarEncounter plural(int number, Timestamp addedAt)
{
    GrammarEncounter encounter;
    encounter.id = id(number);
    encounter.point = GrammarPoint::plural;
    encounter.headword = u"feature"_s;
    encounter.surface = u"features"_s;
    encounter.sentence = u"Two new features."_s;
    encounter.addedAt = addedAt;
    return encounter;
}

ReviewState review(double stability, qint64 reps, Timestamp lastReview)
{
    return {stability, 5, lastReview, lastReview, reps, 0, 0};
}

StudySettings settings(qint64 learningSlots, qint64 newWords, qint64 round, Timestamp changedAt)
{
    return {{.learningSlots = learningSlots, .dailyNewLimit = newWords, .sessionSize = round}, changedAt};
}

WordEntry runOnComputer()
{
    WordEntry run = word(runWord, u"run"_s, day(1));
    run.examples = {
        example(everyDay, u"I run every day."_s, day(1)), example(theTests, u"Run the tests."_s, day(3))};
    run.review = review(3, 2, day(5));
    run.stage = Stage::learning;
    run.stateAt = day(6);
    run.encounterDays = {u"2026-10-01"_s, u"2026-10-05"_s};
    run.sourceKeys = {u"news.example.org"_s};
    run.lookupCount = 4;
    return run;
}

WordEntry runOnPhone()
{
    WordEntry run = word(runWord, u"run"_s, day(1));
    run.examples = {
        example(everyDay, u"I run every day."_s, day(1)), example(aShop, u"She runs a shop."_s, day(2))};
    run.review = review(8, 3, day(6));
    run.stage = Stage::resting;
    run.stateAt = day(4);
    run.encounterDays = {u"2026-10-01"_s, u"2026-10-06"_s};
    run.sourceKeys = {u"news.example.org"_s, u"forum.example.org"_s};
    run.lookupCount = 2;
    run.spellLevel = 2;
    run.lastSpelledAt = day(6);
    return run;
}

SyncBundle computer()
{
    WordEntry apple = word(computerApple, u"apple"_s, day(4));
    apple.examples = {example(computerAppleADay, u"An apple a day."_s, day(4))};
    SyncBundle bundle;
    bundle.words = {apple, word(goneWord, u"gone"_s, day(2)), runOnComputer()};
    bundle.grammar = {plural(computerPlural, day(4))};
    bundle.stats = ReviewStats{u"2026-10-06"_s, 5, 2};
    bundle.settings = settings(50, 8, 15, day(5));
    return bundle;
}

SyncBundle phone()
{
    WordEntry apple = word(phoneApple, u"Apple"_s, day(3));
    apple.examples = {
        example(phoneAppleADay, u"An apple a day."_s, day(3)), example(applePie, u"Apple pie."_s, day(3))};
    apple.wantToLearn = true;
    apple.stateAt = day(3);
    SyncBundle bundle;
    bundle.words = {apple, runOnPhone()};
    bundle.grammar = {plural(phonePlural, day(5))};
    bundle.deleted = {{idText(id(theTests)), day(5)}, {idText(id(goneWord)), day(6)}};
    bundle.stats = ReviewStats{u"2026-10-06"_s, 3, 4};
    bundle.settings = settings(40, 5, 10, day(6));
    return bundle;
}

const WordEntry *find(const SyncBundle &bundle, int number)
{
    const auto found = std::find_if(bundle.words.cbegin(), bundle.words.cend(),
        [number](const WordEntry &entry) { return entry.id == id(number); });
    return found == bundle.words.cend() ? nullptr : &*found;
}

bool holdsExamples(const WordEntry &entry, const QList<QUuid> &ids)
{
    QList<QUuid> held;
    for (const Example &example : entry.examples)
        held.append(example.id);
    return held == ids;
}

class Report {
public:
    explicit Report(QTextStream &out) : m_out(out) { }

    void line(const QString &rule, bool holds)
    {
        m_out << rule << (holds ? u"：是"_s : u"：否"_s) << Qt::endl;
        m_isRight = m_isRight && holds;
    }
    bool isRight() const { return m_isRight; }

private:
    QTextStream &m_out;
    bool m_isRight = true;
};

void reportRun(Report &report, const SyncBundle &merged)
{
    const WordEntry *run = find(merged, runWord);
    const WordEntry word = run ? *run : WordEntry();
    report.line(u"同一个词只有一份"_s, run != nullptr);
    report.line(u"复习进度整个取后复习的一边"_s, word.review == runOnPhone().review);
    report.line(u"学习状态取后改的一边"_s,
        word.stage == Stage::learning && word.stateAt == day(6) && !word.restUntil);
    report.line(u"拼写进度取后练的一边"_s, word.spellLevel == 2 && word.lastSpelledAt == day(6));
    report.line(u"查询次数取大的"_s, word.lookupCount == 4);
    report.line(u"例句合在一起，删掉的不回来"_s, holdsExamples(word, {id(everyDay), id(aShop)}));
    report.line(u"遇见的日子和来源合在一起"_s,
        word.encounterDays && word.encounterDays->size() == 3 && word.sourceKeys
            && word.sourceKeys->size() == 2);
}

void reportApple(Report &report, const SyncBundle &merged)
{
    const WordEntry *apple = find(merged, phoneApple);
    const WordEntry word = apple ? *apple : WordEntry();
    report.line(u"两边各存的同一个词合成一个，留先存的"_s,
        !find(merged, computerApple) && word.headword == u"Apple"_s);
    report.line(u"同样的例句只留一句"_s, holdsExamples(word, {id(phoneAppleADay), id(applePie)}));
    report.line(u"想学的标记不丢"_s, word.isWanted());
}

void reportRest(Report &report, const SyncBundle &merged)
{
    report.line(u"删掉的词两边都没有"_s, !find(merged, goneWord) && merged.words.size() == 2);
    report.line(u"同一句的语法只记一次"_s,
        merged.grammar.size() == 1 && merged.grammar.first().id == id(computerPlural));
    report.line(u"同一天的计数取大的"_s, merged.stats == ReviewStats{u"2026-10-06"_s, 5, 4});
    report.line(u"复习设置取后改的一边"_s, merged.settings == phone().settings);
    SyncBundle untouched = phone();
    untouched.settings.reset();
    const auto taken = SyncMerge::merge(computer(), untouched).settings;
    report.line(u"没改过设置的一边听另一边的"_s, taken && taken->learningSlots == 50);
}

void reportAlgebra(Report &report, const SyncBundle &merged)
{
    const QString hash = BundleForm::hash(merged);
    const auto isSame = [&hash](const SyncBundle &a, const SyncBundle &b) {
        return BundleForm::hash(SyncMerge::merge(a, b)) == hash;
    };
    report.line(u"谁先合并都一样"_s, isSame(phone(), computer()));
    report.line(u"再合并一次不变"_s, isSame(merged, phone()) && isSame(merged, merged));
}

WordEntry learning(int number, const QString &headword, qint64 reps, double stability)
{
    WordEntry entry = word(number, headword, day(1));
    entry.stage = Stage::learning;
    entry.stateAt = day(number);
    if (reps > 0)
        entry.review = review(stability, reps, day(5));
    return entry;
}

void printTrim(QTextStream &out)
{
    const QList<WordEntry> words{learning(1, u"reluctant"_s, 6, 20), learning(2, u"merge"_s, 0, 0),
        learning(3, u"deploy"_s, 2, 1.5), learning(4, u"thread"_s, 2, 4)};
    QStringList headwords;
    for (const QUuid &picked : SlotTrim::pick(words, 2)) {
        const auto found = std::find_if(
            words.cbegin(), words.cend(), [&picked](const WordEntry &entry) { return entry.id == picked; });
        headwords.append(found->headword);
    }
    out << u"在学多出 2 个时放回："_s << headwords.join(u"、"_s) << Qt::endl;
}

} // namespace

bool runMerge(QTextStream &out)
{
    const SyncBundle merged = SyncMerge::merge(computer(), phone());
    Report report(out);
    reportRun(report, merged);
    reportApple(report, merged);
    reportRest(report, merged);
    reportAlgebra(report, merged);
    printTrim(out);
    out << (report.isRight() ? u"OK 合并规则正常"_s : u"FAIL 合并规则不对"_s) << Qt::endl;
    return report.isRight();
}

} // namespace nimbrelle::SelfTest
