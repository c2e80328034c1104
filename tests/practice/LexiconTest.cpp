#include "PracticeLexicon.h"
#include "practice/EditDistance.h"
#include "practice/Mnemonic.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace nimbrelle::practice {

using testing::AnyOf;
using testing::EndsWith;
using testing::StartsWith;

TEST(Lexicon, EveryWordIsComplete)
{
    EXPECT_GE(practiceLexicon().entries().size(), 170u);
    for (const Entry &entry : practiceLexicon().entries()) {
        SCOPED_TRACE(entry.headword);
        EXPECT_THAT(entry.phonetic, testing::AllOf(StartsWith("/"), EndsWith("/")));
        EXPECT_THAT(entry.reg, AnyOf("formal", "neutral", "casual", "slang", "technical"));
        EXPECT_FALSE(entry.definitionEn.empty());
        EXPECT_LE(wordsOf(entry.definitionEn).size(), 15u);
        EXPECT_TRUE(containsHan(entry.noteZh));
        EXPECT_FALSE(entry.familyRoot.empty());
        EXPECT_FALSE(entry.examples.empty());
    }
}

TEST(Lexicon, EverySenseHasAShortMeaningAndAKnownPartOfSpeech)
{
    for (const Entry &entry : practiceLexicon().entries()) {
        for (const Sense &sense : entry.senses) {
            SCOPED_TRACE(entry.headword + " " + sense.pos);
            EXPECT_TRUE(containsHan(sense.meaningZh));
            EXPECT_LE(codePointCount(sense.meaningZh), 15u);
            EXPECT_THAT(sense.pos,
                AnyOf("n.", "v.", "adj.", "adv.", "prep.", "conj.", "pron.", "phrase", "idiom", "abbr.",
                    "interj.", "name"));
        }
    }
}

TEST(Lexicon, FormsBelongTogether)
{
    const std::set<std::set<FormKind>> complete = {{},
        {FormKind::base, FormKind::thirdPerson, FormKind::ing, FormKind::past, FormKind::pastParticiple},
        {FormKind::base, FormKind::plural}, {FormKind::base, FormKind::comparative, FormKind::superlative}};
    for (const Entry &entry : practiceLexicon().entries()) {
        for (const Sense &sense : entry.senses) {
            SCOPED_TRACE(entry.headword + " " + sense.pos);
            std::set<FormKind> kinds;
            for (const Form &form : sense.forms) {
                kinds.insert(form.kind);
                EXPECT_FALSE(form.text.empty());
                EXPECT_TRUE(form.kind != FormKind::base || form.text == entry.headword);
            }
            EXPECT_TRUE(complete.contains(kinds));
            EXPECT_TRUE(sense.pos != "v." || sense.isVerb());
        }
    }
}

TEST(Lexicon, AffixesAreOfTheThirtyAndStandInTheWord)
{
    for (const Entry &entry : practiceLexicon().entries()) {
        for (const std::string &affix : entry.affixes) {
            SCOPED_TRACE(entry.headword + " " + affix);
            EXPECT_FALSE(meaningOfAffix(affix).empty());
            if (affix.ends_with('-'))
                EXPECT_NE(entry.headword.find(affix.substr(0, affix.size() - 1)), std::string::npos);
        }
    }
}

TEST(Lexicon, ExamplesUseTheirWordAndAreTranslated)
{
    for (const Entry &entry : practiceLexicon().entries()) {
        for (const ExampleSentence &example : entry.examples) {
            SCOPED_TRACE(example.en);
            EXPECT_TRUE(practiceLexicon().firstMatchOf(entry, wordsOf(example.en)).has_value());
            EXPECT_TRUE(containsHan(example.zh));
            EXPECT_FALSE(containsHan(example.en));
            EXPECT_EQ(practiceLexicon().translationOf(example.en), example.zh);
        }
    }
}

TEST(Lexicon, NoHeadwordStandsTwice)
{
    std::set<std::string> seen;
    for (const Entry &entry : practiceLexicon().entries())
        EXPECT_TRUE(seen.insert(matchKey(entry.headword)).second) << entry.headword;
}

TEST(Lexicon, TipsKeepTheirShape)
{
    for (const Entry &entry : practiceLexicon().entries()) {
        SCOPED_TRACE(entry.headword);
        const std::string tip =
            tipFor(practiceLexicon(), {entry.headword, {}, entry.familyRoot, entry.affixes, {}});
        const auto lines = split(tip, "\n");
        EXPECT_LE(lines.size(), 3u);
        for (const std::string_view line : lines) {
            EXPECT_THAT(
                std::string(line), AnyOf(StartsWith("联想："), StartsWith("拆开："), StartsWith("画面：")));
            EXPECT_LE(codePointCount(line), 40u);
        }
    }
}

TEST(Lexicon, ReaderNamesTheWordThatBreaksTheForm)
{
    const auto messageOf = [](std::string_view json) -> std::string {
        try {
            readEntries(json);
        } catch (const LexiconError &error) {
            return error.what();
        }
        return {};
    };
    EXPECT_EQ(messageOf(R"([{"headword":"odd","phonetic":1}])"), "odd: phonetic should be a text");
    EXPECT_EQ(messageOf("{}"), "a word file is no JSON array");
    EXPECT_EQ(messageOf("[]"), "");
}

TEST(EditDistance, CountsASwapOfNeighboursOnce)
{
    EXPECT_EQ(editDistance("cluade", "claude"), 1u);
    EXPECT_EQ(editDistance("califonil", "california"), 2u);
    EXPECT_EQ(editDistance("", "abc"), 3u);
    EXPECT_EQ(editDistance("same", "same"), 0u);
}

} // namespace nimbrelle::practice
