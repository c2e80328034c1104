#include "practice/Sentences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle::practice {

using testing::ElementsAre;

TEST(Sentences, AreCutAtTheirEnds)
{
    EXPECT_THAT(sentencesOf("It broke in 2.0. Why? \"No idea.\" he said"),
        ElementsAre("It broke in 2.0.", "Why?", "\"No idea.\"", "he said"));
    EXPECT_THAT(sentencesOf("Use a tool, e.g. git, and wait... then push. done"),
        ElementsAre("Use a tool, e.g. git, and wait... then push.", "done"));
}

TEST(Sentences, WrappedLinesRunOnAndLabelsStandAlone)
{
    EXPECT_THAT(
        sentencesOf("Home\nSettings\nI was reluctant to rewrite the whole\nparser, but it kept crashing."),
        ElementsAre(
            "Home", "Settings", "I was reluctant to rewrite the whole parser, but it kept crashing."));
}

TEST(Sentences, PageFurnitureIsNone)
{
    for (const char *noise :
        {"u/someone_ someone 703K karma Follow Chat Joined 2019", "Reply Share Save Report", "karma", ""})
        EXPECT_FALSE(looksLikeSentence(noise)) << noise;
    for (const char *sentence :
        {"My posts get no karma", "Check docs first.", "ngl the new update is kinda mid tbh."})
        EXPECT_TRUE(looksLikeSentence(sentence)) << sentence;
}

TEST(Sentences, TheFirstRealOneWithTheWordsIsFound)
{
    const auto found = sentenceWith("karma 12 Follow\nNobody cares. You get Karma for posting.", "karma");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->text, "You get Karma for posting.");
    EXPECT_EQ(found->wordBegin, 2u);
    EXPECT_FALSE(sentenceWith("He ranted all day.", "ran"));
}

} // namespace nimbrelle::practice
