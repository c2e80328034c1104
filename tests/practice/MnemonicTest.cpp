#include "practice/Mnemonic.h"

#include "PracticeLexicon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle::practice {

using testing::HasSubstr;

TEST(Mnemonic, ReadsEveryLineOfTheQuestion)
{
    const auto question = readMnemonicQuestion(
        "要记的词：unhappiness（n. 不快乐）\n他遇到它的句子：So much unhappiness.\n"
        "词根：happy\n词缀：un- -ness\n他已经掌握的词：run, happy\n他常看的网站和内容：a；b");
    ASSERT_TRUE(question);
    EXPECT_EQ(question->headword, "unhappiness");
    EXPECT_EQ(question->sentence, "So much unhappiness.");
    EXPECT_EQ(question->familyRoot, "happy");
    EXPECT_THAT(question->affixes, testing::ElementsAre("un-", "-ness"));
    EXPECT_THAT(question->knownWords, testing::ElementsAre("run", "happy"));
    EXPECT_FALSE(readMnemonicQuestion("Query: run"));
}

TEST(Mnemonic, LinksToAWordTheLearnerHasMastered)
{
    const std::string tip =
        tipFor(practiceLexicon(), {"unhappiness", {}, "happy", {"un-", "-ness"}, {"run", "happy"}});
    EXPECT_THAT(tip, HasSubstr("联想：和你已经认识的 happy 是一家"));
    EXPECT_THAT(tip, HasSubstr("拆开：un-（不） + happy + -ness（变名词）"));
}

TEST(Mnemonic, AlwaysHasSomethingToSay)
{
    EXPECT_EQ(tipFor(practiceLexicon(), {"zxqy", {}, {}, {}, {}}), "画面：把 zxqy 写在便利贴上，贴在屏幕边");
    const std::string endless(500, 'x');
    EXPECT_LE(
        codePointCount(tipFor(practiceLexicon(), {endless, endless, endless, {"un-"}, {endless + "y"}})),
        40u);
}

} // namespace nimbrelle::practice
