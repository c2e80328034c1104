#include "practice/Explain.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle::practice {

TEST(Lexicon, ExplainsEveryWordInItsExamples)
{
    const Lexicon lexicon;
    EXPECT_GE(lexicon.entries().size(), 240u);
    for (const Value *entry : lexicon.entries()) {
        ASSERT_FALSE(listAt(*entry, "examples").empty() || textAt(*entry, "tip_zh").empty());
        for (const Value &example : listAt(*entry, "examples")) {
            const std::string_view text = textAt(example, "en");
            SCOPED_TRACE(std::string(text));
            const std::vector<Word> words = wordsOf(text);
            const std::vector<Match> known = lexicon.wordsIn(words);
            const auto own = std::ranges::find(known, entry, &Match::of);
            ASSERT_NE(own, known.end());
            const JsonObject answer = explain(lexicon, own->in(text, words), text);
            for (const char *name :
                {"phonetic", "pos", "meaning_zh", "definition_en", "register", "family_root"})
                EXPECT_NE(textAt(answer.value(), name), "") << name;
            EXPECT_EQ(textAt(answer.value(), "headword"), textAt(*entry, "headword"));
            EXPECT_EQ(textAt(answer.value(), "sentence"), text);
            EXPECT_TRUE(containsHan(textAt(answer.value(), "sentence_zh")));
            for (const auto &[shown, rule] : membersAt(example, "grammar"))
                EXPECT_TRUE(keyHolds(keyOf(text), keyOf(textOf(shown))) && lexicon.grammar(textOf(rule)));
        }
    }
}

} // namespace nimbrelle::practice
