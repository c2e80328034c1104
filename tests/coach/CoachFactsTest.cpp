#include "coach/CoachFacts.h"

#include "coach/CoachPrompts.h"
#include "coach/CoachScreen.h"
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
        events.append({.time = timestampFromIso(time).value(),
            .kind = u"review"_s,
            .word = u"word"_s,
            .detail = u"again"_s});
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
    const ActivityLog spring(reviewsAt({u"2026-03-08T03:00:00Z"_s}), utc("2026-03-09T04:30:00Z"));
    EXPECT_EQ(facts::lastStudyDay(spring), QStringList{u"今天之前最近一次学习：2026-03-07（2 天前）"_s});
    // Of a day of 25 hours, the first second and the first of the next one.
    const ActivityLog autumn(
        reviewsAt({u"2026-11-01T04:00:00Z"_s, u"2026-11-02T05:00:00Z"_s}), utc("2026-11-02T05:00:00Z"));
    EXPECT_EQ(facts::reviewsToday(autumn), 1);
    EXPECT_EQ(facts::lastStudyDay(autumn), QStringList{u"今天之前最近一次学习：2026-11-01（1 天前）"_s});
}

TEST(CoachFacts, HeadTheDaysThoughNoneHasAnItem)
{
    const ActivityLog log({{.time = utc("2026-03-14T13:00:00Z"), .kind = u"join"_s, .word = u"word"_s}},
        utc("2026-03-14T13:30:00Z"));
    EXPECT_EQ(facts::recentDays(log), QStringList{u"\n最近两周每天的记录（只列有活动的日子）："_s});
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

TEST(CoachPrompts, AreUnchangedToTheCharacter)
{
    const auto hashOf = [](const QString &text) {
        return QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256).toHex().first(16);
    };
    EXPECT_EQ(hashOf(prompts::coach()), "d83800ca5eec3751");
    EXPECT_EQ(hashOf(prompts::briefingTask()), "fe92844cce3c9c4c");
}

TEST(CoachScreen, TheDateIsTheLearnersOwn)
{
    const Timestamp late = utc("2026-11-21T20:00:00Z");
    {
        const TimeZone shanghai("Asia/Shanghai");
        EXPECT_EQ(coachDateText(late), u"11月22日 星期日"_s);
    }
    const TimeZone utc("UTC");
    EXPECT_EQ(coachDateText(late), u"11月21日 星期六"_s);
}

} // namespace
