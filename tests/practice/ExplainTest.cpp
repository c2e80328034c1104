#include "practice/Explain.h"

#include "PracticeLexicon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle::practice {

TEST(Explain, ReadsAQuestionWhoseSelectionHoldsLineBreaks)
{
    const auto question = readExplainQuestion("Selection: give\nup\nSurrounding text: I had to give\nup.");
    ASSERT_TRUE(question);
    EXPECT_EQ(question->selection, "give\nup");
    EXPECT_EQ(question->context, "I had to give\nup.");
    EXPECT_EQ(readExplainQuestion("Selection: ran\nSurrounding text: (none)")->context, "");
    EXPECT_FALSE(readExplainQuestion("Query: ran"));
}

TEST(Explain, TakesItsOwnExampleWhereTheTextIsOnlyButtons)
{
    const WordAnswer answer =
        explain(practiceLexicon(), {"karma", "u/someone_ someone 703K karma Follow Chat Joined 2019"});
    EXPECT_TRUE(answer.sentenceIsExample);
    EXPECT_THAT(answer.sentence, testing::HasSubstr("karma"));
    EXPECT_TRUE(containsHan(answer.sentenceZh));
}

TEST(Explain, ExampleShowsTheMarkedFormWhereThereIsOne)
{
    const WordAnswer answer = explain(practiceLexicon(), {"ran", ""});
    EXPECT_EQ(answer.headword, "run");
    EXPECT_EQ(answer.surfaceForm, "ran");
    EXPECT_EQ(answer.formKind, FormKind::past);
    EXPECT_TRUE(answer.sentenceIsExample);
}

TEST(Explain, KeepsTheHelpersOfAMarkedVerbGroup)
{
    const WordAnswer answer =
        explain(practiceLexicon(), {"has been running", "Noise. The server has been running for days."});
    EXPECT_EQ(answer.headword, "run");
    EXPECT_EQ(answer.surfaceForm, "has been running");
    EXPECT_EQ(explain(practiceLexicon(), {"don't give up", "Please don't give up."}).headword, "give up");
}

TEST(Explain, TranslatesOnlySentencesItKnows)
{
    EXPECT_EQ(
        explain(practiceLexicon(), {"deprecated", "This API was deprecated in version 2.0."}).sentenceZh,
        "这个接口在 2.0 版被弃用了。");
    EXPECT_EQ(explain(practiceLexicon(), {"deprecated", "My whole life was deprecated."}).sentenceZh,
        noTranslationZh);
}

TEST(Explain, SaysSoWhenAWordIsUnknown)
{
    const WordAnswer answer =
        explain(practiceLexicon(), {" \"frobnicate\", ", "You have to frobnicate it first."});
    EXPECT_EQ(answer.headword, "frobnicate");
    EXPECT_EQ(answer.meaningZh, "练习词条：没有收录");
    EXPECT_EQ(answer.phonetic, "");
    EXPECT_EQ(answer.sentence, "You have to frobnicate it first.");
    EXPECT_FALSE(answer.sentenceIsExample);
}

TEST(Explain, StandsAnyText)
{
    for (const std::string text :
        {"", " ", "，。", "\xF0\x9F", "'''", "...", "🙂", "to to to to to to to to"})
        EXPECT_FALSE(explain(practiceLexicon(), {text, text}).meaningZh.empty());
}

} // namespace nimbrelle::practice
