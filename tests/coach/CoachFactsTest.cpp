#include "coach/CoachFacts.h"

#include "coach/CoachPrompts.h"
#include "coach/CoachQuestion.h"
#include "coach/FactPieces.h"
#include "coach/FactTexts.h"
#include "coach/SampleLearner.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

QList<LearningLog::Event> reviewsAt(const QStringList &times)
{
    QList<LearningLog::Event> events;
    for (const QString &time : times)
        events.append({timestampFromIso(time).value(), u"review"_s, u"word"_s, u"again"_s});
    return events;
}

TEST(CoachFacts, TellEverythingOfALearner)
{
    SampleLearner learner;
    const auto before = learner.words.entries();
    EXPECT_EQ(learner.facts.build(learner.now), SampleLearner::expectedFacts());
    EXPECT_EQ(learner.facts.todayReview(learner.now), SampleLearner::expectedReview());
    EXPECT_EQ(learner.words.entries(), before);
    EXPECT_EQ(learner.facts.events().size(), 32) << "three lines are broken";
}

TEST(CoachFacts, TellLittleOfAnEmptyNotebook)
{
    const TimeZone zone("Asia/Shanghai");
    Notebook notebook;
    const CoachFacts facts(notebook.store, notebook.config, notebook.log);
    EXPECT_EQ(facts.build(utc("2026-03-14T16:00:00Z")), uR"(现在：2026-03-15 星期日 深夜 0 点

单词本一共 0 个词：在学 0、见过 0、休息 0、掌握 0、沉睡 0。「在学」名额 30 个（只有在学和掌握的词会复习）

今天已经复习了 0 题。现在打开复习，这一轮有 0 题，每题大约 15～20 秒)"_s);
    EXPECT_EQ(facts.todayReview(utc("2026-03-14T16:00:00Z")), QString());
}

TEST(CoachFacts, CountDatesAcrossAClockChange)
{
    const TimeZone zone("America/New_York");
    // The day in between has 23 hours, so that two dates lie 25 and a half hours apart.
    const Diary spring(reviewsAt({u"2026-03-08T03:00:00Z"_s}), utc("2026-03-09T04:30:00Z"));
    EXPECT_EQ(facts::lastStudyDay(spring), QStringList{u"今天之前最近一次学习：2026-03-07（2 天前）"_s});
    // Both ends of a day of 25 hours.
    const Diary autumn(
        reviewsAt({u"2026-11-01T04:00:00Z"_s, u"2026-11-02T04:59:59Z"_s, u"2026-11-02T05:00:00Z"_s}),
        utc("2026-11-02T05:00:00Z"));
    EXPECT_EQ(facts::firstUse(autumn),
        QStringList{u"第一次用 Nimbrelle 的记录：2026-11-01。有记录的日子一共 2 天"_s});
    EXPECT_EQ(facts::reviewsToday(autumn), 1);
    EXPECT_EQ(facts::lastStudyDay(Diary(reviewsAt({u"2026-11-02T06:00:00Z"_s}), utc("2026-11-02T05:00:00Z"))),
        QStringList());
}

TEST(CoachFacts, HeadTheDaysThoughNoneHasAnItem)
{
    const Diary diary({{utc("2026-03-14T13:00:00Z"), u"join"_s, u"word"_s, {}}}, utc("2026-03-14T13:30:00Z"));
    EXPECT_EQ(facts::recentDays(diary), QStringList{u"\n最近两周每天的记录（只列有活动的日子）："_s});
}

TEST(CoachFacts, CutLongLists)
{
    const Timestamp now = utc("2026-03-14T13:30:00Z");
    QList<WordEntry> words;
    for (int i = 0; i < 50; ++i) {
        words.append(wordNamed(u"w"_s + QString::number(i)));
        words.last().createdAt = now - std::chrono::seconds{i};
        words.last().stage = Stage::mastered;
        words.last().spellPractice = true;
    }
    EXPECT_EQ(facts::newWords(words, now).size(), 1 + 40);
    EXPECT_TRUE(facts::newWords(words, now).last().contains(u" w39（"_s));
    EXPECT_TRUE(facts::masteredWords(words).first().endsWith(u", w39"_s));
    EXPECT_TRUE(facts::spellPracticeWords(words, 50).first().endsWith(u", w14"_s));
    EXPECT_TRUE(facts::spellPracticeWords(words, 50).first().startsWith(
        u"「常拼」（想练拼写的名字、品牌等）有 50 个：w0, "_s));
}

TEST(FactTexts, NameThePeriodsOfADay)
{
    QString periods;
    for (int hour = 0; hour < 24; ++hour)
        periods += facts::periodOf(hour).first(1);
    EXPECT_EQ(periods, u"深深深深深上上上上上上上下下下下下下晚晚晚晚晚深"_s);
}

TEST(FactTexts, RoundDays)
{
    const std::pair<double, const char16_t *> cases[]{{0, u"不到 1 天"}, {0.99, u"不到 1 天"}, {1, u"1 天"},
        {2.4, u"2 天"}, {2.5, u"3 天"}, {365, u"365 天"}};
    for (const auto &[days, text] : cases)
        EXPECT_EQ(facts::formatDays(days), QString::fromUtf16(text)) << days;
}

TEST(FactTexts, CutSentencesAndTitles)
{
    const QString family = u"👨‍👩‍👧"_s; // one character of eight units
    Example example = exampleOf(family.repeated(111));
    EXPECT_EQ(facts::beginning(example.sentence), family.repeated(110));
    EXPECT_EQ(facts::placeOf(nullptr), QString());
    EXPECT_EQ(facts::placeOf(&example), QString());
    example.sourceTitle = family.repeated(51);
    EXPECT_EQ(facts::placeOf(&example), u"「"_s + family.repeated(50) + u"」"_s);
    example.sourceURL = u"https://www.example.org/a"_s;
    example.sourceTitle.reset();
    EXPECT_EQ(facts::placeOf(&example), u"example.org"_s);
}

TEST(CoachPrompts, StandToTheCharacter)
{
    const auto hashOf = [](const QString &text) {
        return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256).toHex();
    };
    EXPECT_EQ(hashOf(prompts::coach()), "d83800ca5eec375117d5a4d5b897079f61429e777505a5e6d0ac20599d912c01");
    EXPECT_EQ(
        hashOf(prompts::briefingTask()), "fe92844cce3c9c4c79619ca3e247eda875eb5663084af166af4cff8757f2556b");
}

TEST(CoachQuestions, QuoteTheReviewOnlyAfterOne)
{
    for (const CoachQuestion question : allCoachQuestions) {
        EXPECT_EQ(prompt(question, u"ngl：想起来了"_s).contains(u"：\nngl：想起来了\n像教练一样"_s),
            question == CoachQuestion::afterReview);
        EXPECT_FALSE(label(question).isEmpty());
    }
}

} // namespace
