#include "practice/Lookup.h"

#include "PracticeLexicon.h"
#include "practice/Gloss.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle::practice {

using testing::ElementsAre;
using testing::Field;
using testing::StartsWith;

struct LookupCase {
    std::string query;
    std::string headword;
    bool corrected;
};

class Lookup : public testing::TestWithParam<LookupCase> { };

TEST_P(Lookup, FindsWhatWasMeant)
{
    const LookupAnswer answer = lookUp(practiceLexicon(), GetParam().query);
    EXPECT_EQ(answer.word.headword, GetParam().headword);
    EXPECT_EQ(answer.corrected, GetParam().corrected);
    EXPECT_FALSE(answer.aboutZh.empty());
}

INSTANTIATE_TEST_SUITE_P(English, Lookup,
    testing::Values(LookupCase{"Hotel Califonil", "Hotel California", true},
        LookupCase{"canva", "Canva", false}, LookupCase{"bohemian rhapsody", "Bohemian Rhapsody", false},
        LookupCase{"Cluade", "Claude", true}, LookupCase{"reluctnat", "reluctant", true},
        LookupCase{"  RAN ", "run", false}, LookupCase{"tldr", "TL;DR", false},
        LookupCase{"TL;DR", "TL;DR", false}, LookupCase{"house", "house", false}));

INSTANTIATE_TEST_SUITE_P(Chinese, Lookup,
    testing::Values(LookupCase{"放弃", "give up", false}, LookupCase{"部署", "deploy", false},
        LookupCase{"加州旅馆", "Hotel California", false},
        LookupCase{"没有这个词吧", "没有这个词吧", false}));

TEST(LookupAlternatives, AreForChineseAndAtMostThree)
{
    const auto text = [](auto match) { return Field(&Alternative::text, match); };
    EXPECT_THAT(lookUp(practiceLexicon(), "放弃").alternatives,
        ElementsAre(text("quit"), text("abandon"), text("let go")));
    EXPECT_TRUE(lookUp(practiceLexicon(), "give up").alternatives.empty());
    EXPECT_LE(lookUp(practiceLexicon(), "的").alternatives.size(), 3u);
}

TEST(LookupUnknown, ComesBackAsTypedAndMarked)
{
    const LookupAnswer answer = lookUp(practiceLexicon(), "zxqy");
    EXPECT_EQ(answer.word.meaningZh, "练习词条：没有收录");
    EXPECT_THAT(answer.aboutZh, StartsWith("内置的练习词库里没有"));
}

TEST(Translate, KnownSentencesAreTranslatedWhole)
{
    const auto answer =
        translate(practiceLexicon(), "Run the tests before you push.\nWow, that was a fast reply.");
    EXPECT_EQ(answer.translationZh, "推代码之前先跑一遍测试。哇，回得真快。");
}

TEST(Translate, OtherTextIsGlossedAndMarked)
{
    const auto answer = translate(practiceLexicon(), "The maintainer was reluctant to merge it.");
    EXPECT_THAT(answer.translationZh, StartsWith("（练习模式，不是完整翻译"));
    EXPECT_THAT(
        answer.translationZh, testing::HasSubstr("reluctant〔不情愿的，勉强的〕 to merge〔合并〕 it."));
    EXPECT_THAT(answer.keyTerms,
        ElementsAre(Field(&KeyTerm::text, "maintainer"), Field(&KeyTerm::text, "reluctant"),
            Field(&KeyTerm::text, "merge")));
    EXPECT_THAT(
        translate(practiceLexicon(), "The cat sat.").translationZh, StartsWith("（练习模式没有这段的译文"));
}

TEST(Translate, KeyTermsAreAtMostFourWithoutTheBasicOnes)
{
    const auto terms = translate(practiceLexicon(),
        "Run fast: the flaky cache made the deployment crash, and the maintainer had to roll back, merge and "
        "deploy.")
                           .keyTerms;
    EXPECT_THAT(terms,
        ElementsAre(Field(&KeyTerm::text, "flaky"), Field(&KeyTerm::text, "cache"),
            Field(&KeyTerm::text, "deployment"), Field(&KeyTerm::text, "crash")));
}

} // namespace nimbrelle::practice
