#include "practice/Conversation.h"

#include "PracticeLexicon.h"
#include "practice/AskTalk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle::practice {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

static const std::string aboutReluctant =
    "我在看这段英文：\nI was reluctant to merge it.\n\nIt crashed.\n\n中文翻译：我不太想合并。\n\n"
    "我想重点了解的词：reluctant\n\n下面是我的问题。";

static std::string ask(std::string question, std::string context = aboutReluctant)
{
    return converse(practiceLexicon(),
        {{{"system", "你是一位耐心的英语老师。"}, {"user", std::move(context)},
             {"user", std::move(question)}},
            true, false});
}

TEST(AskTalk, ReadsTheTextAndTheWordInQuestion)
{
    const AskSubject subject = readAskSubject({{{"user", aboutReluctant}}, true, false});
    EXPECT_EQ(subject.original, "I was reluctant to merge it.\n\nIt crashed.");
    EXPECT_EQ(subject.focusWord, "reluctant");
    const AskSubject plain =
        readAskSubject({{{"user", "我在看这段英文：\nShort one.\n\n下面是我的问题。"}}, true, false});
    EXPECT_EQ(plain.original, "Short one.");
    EXPECT_EQ(plain.focusWord, "");
}

TEST(Conversation, SaysThatItIsNoAi)
{
    for (const char *question : {"为什么这里用「reluctant」？", "今天天气怎么样", "帮我把这句话拆开讲讲"})
        EXPECT_THAT(ask(question), EndsWith(std::string(whatAnswersZh)));
}

TEST(Conversation, AnswersTheReadyMadeQuestionsFromItsWords)
{
    EXPECT_THAT(ask("为什么这里用「reluctant」？这样说是什么意思？"), HasSubstr("心里不太想做"));
    EXPECT_THAT(
        ask("帮我把这句话拆开讲讲：主干是什么"), AllOf(HasSubstr("**merge**"), HasSubstr("**crash**")));
    EXPECT_THAT(
        ask("用更简单、更常见的英文把这句话再说一遍"), HasSubstr("not really wanting to do something"));
    EXPECT_THAT(
        ask("用「reluctant」再造 3 个日常能用到的例句，每句附中文。"), HasSubstr("She seemed reluctant"));
    EXPECT_THAT(ask("那 unwilling 呢？"), HasSubstr("**unwilling**"));
    EXPECT_THAT(ask("今天天气怎么样"), HasSubstr("答不上来"));
    EXPECT_THAT(
        ask("这是什么？", "我在看这段英文：\nQux.\n\n下面是我的问题。"), HasSubstr("没有词库认得的词"));
}

TEST(Conversation, KeepsToALengthThatIsAsked)
{
    const std::string answer = ask("用一句中文解释 ngl 是什么意思，不超过 20 字。");
    EXPECT_THAT(answer, AllOf(HasSubstr("说实话"), HasSubstr("非 AI")));
    EXPECT_LE(codePointCount(answer), 20u);
    EXPECT_EQ(lengthLimitOf("不超过很多字"), std::nullopt);
}

} // namespace nimbrelle::practice
