#include "practice/CoachTalk.h"

#include "PracticeLexicon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle::practice {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

static const std::string record = R"(现在：2025-11-22 星期六 晚上 22 点

最近两周每天的记录（只列有活动的日子）：
- 2025-11-20（晚上）：存了 2 个词

最近 7 天新存的词（新的在前），后面是在哪里遇到的、原句：
- 2025-11-22 literally（adv. 真的（夸张强调），口语） 来自 old.reddit.com「Help」：I literally died.
- 2025-11-21 reluctant（adj. 不情愿的）

最近两周忘过两次以上的词：
- deprecate：没想起来 → 没想起来 → 想起来了。意思：弃用。原句：This API was deprecated.
最近两次都想起来了的词：fast, run

今天已经复习了 0 题。现在打开复习，这一轮有 12 题，每题大约 15～20 秒)";

static std::string say(const std::string &question)
{
    return coachTalk(practiceLexicon(),
        {{{"system", "英语教练"}, {"user", "这是我现在的学习记录：\n" + record + "\n\n先写今天的简报。"},
             {"assistant", "……"}, {"user", question}},
            true, false});
}

TEST(CoachTalk, ReadsTheFactsOfTheRecord)
{
    const CoachRecord facts = readCoachRecord(record);
    ASSERT_EQ(facts.saved.size(), 2u);
    EXPECT_EQ(facts.saved[0].word, "literally");
    EXPECT_EQ(facts.saved[0].meaningZh, "真的（夸张强调）");
    EXPECT_EQ(facts.saved[0].place, "old.reddit.com「Help」");
    EXPECT_EQ(facts.saved[1].place, "");
    ASSERT_EQ(facts.forgotten.size(), 1u);
    EXPECT_EQ(facts.forgotten[0].word, "deprecate");
    EXPECT_EQ(facts.forgotten[0].meaningZh, "弃用");
    EXPECT_EQ(facts.forgotten[0].times, 2u);
    EXPECT_THAT(facts.remembered, ElementsAre("fast", "run"));
    EXPECT_EQ(facts.nextQuestions, 12u);
}

TEST(CoachTalk, BriefingIsMadeOfTheRecord)
{
    const std::string text = coachTalk(practiceLexicon(),
        {{{"system", "英语教练"}, {"user", "这是学习记录：\n" + record + "\n\n请写今天的教练简报。"}}, true,
            false});
    EXPECT_THAT(text,
        AllOf(HasSubstr("**literally**"), HasSubstr("old.reddit.com"), HasSubstr("**deprecate**（弃用）"),
            HasSubstr("12 题"), HasSubstr("不想做也没关系")));
}

TEST(CoachTalk, AnEmptyRecordInventsNothing)
{
    const std::string text = coachTalk(
        practiceLexicon(), {{{"system", "英语教练"}, {"user", "这是学习记录：\n现在：今天"}}, true, false});
    EXPECT_THAT(text, AllOf(HasSubstr("还在了解你"), Not(HasSubstr("**"))));
}

TEST(CoachTalk, AnswersEachReadyMadeQuestion)
{
    EXPECT_THAT(
        say("我刚复习完。今天复习过的词和每次的结果：\ngive up：拼写（拼对）\n像教练一样跟我说说：哪些"),
        AllOf(HasSubstr("- **give up**：拼写（拼对）"), Not(HasSubstr("像教练"))));
    EXPECT_THAT(say("今天时间不多，你帮我挑 3 个最值得花心思的词"),
        AllOf(HasSubstr("**deprecate**"), HasSubstr("**literally**"), HasSubstr("**reluctant**")));
    EXPECT_THAT(say("根据我的记录，说说我最近最弱的地方是什么"),
        AllOf(HasSubstr("**deprecate**"), Not(HasSubstr("**reluctant**"))));
    EXPECT_THAT(say("挑一个我最近老忘的词，给我一个记法"), HasSubstr("**deprecate**"));
    EXPECT_THAT(say("flaky 怎么用"), HasSubstr("**flaky**"));
}

TEST(CoachTalk, StandsABrokenRecord)
{
    for (const char *line : {"- ", "- 2025-11-22 ", "- 2025-11-22 x（（", "- x（）", "-"})
        EXPECT_TRUE(readCoachRecord("最近 7 天新存的词：\n" + std::string(line)).saved.empty()) << line;
}

} // namespace nimbrelle::practice
