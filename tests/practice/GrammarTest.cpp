#include "PracticeLexicon.h"
#include "practice/Explain.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle::practice {

struct GrammarCase {
    std::string selection;
    std::string sentence;
    FormKind kind;
    std::string grammar;
    std::string quoted; ///< what the note begins with
};

class Grammar : public testing::TestWithParam<GrammarCase> { };

TEST_P(Grammar, ReadsTheFormInItsSentence)
{
    const auto &[selection, sentence, kind, grammar, quoted] = GetParam();
    const WordAnswer answer = explain(practiceLexicon(), {selection, sentence});
    EXPECT_EQ(nameOf(answer.formKind), nameOf(kind));
    EXPECT_EQ(answer.grammar, grammar);
    EXPECT_THAT(answer.grammarNoteZh, testing::StartsWith(quoted));
    EXPECT_EQ(answer.sentence, sentence);
    EXPECT_FALSE(answer.sentenceIsExample);
}

INSTANTIATE_TEST_SUITE_P(Verbs, Grammar,
    testing::Values(
        GrammarCase{"ran", "He ran to the store yesterday.", FormKind::past, "past_simple", "ran："},
        GrammarCase{"running", "The server has been running for days.", FormKind::ing, "present_perfect",
            "has been running："},
        GrammarCase{
            "running", "I am running late today.", FormKind::ing, "present_continuous", "am running："},
        GrammarCase{"running", "They were still running at night.", FormKind::ing, "past_continuous",
            "were still running："},
        GrammarCase{"running", "She likes running in the park.", FormKind::ing, "gerund", "running："},
        GrammarCase{"run", "I've run it twice.", FormKind::pastParticiple, "present_perfect", "I've run："},
        GrammarCase{"written", "She had written it before.", FormKind::pastParticiple, "past_perfect",
            "had written："},
        GrammarCase{"deprecated", "This API was deprecated in version 2.0.", FormKind::pastParticiple,
            "passive", "was deprecated："},
        GrammarCase{"deprecated", "It will be deprecated soon.", FormKind::pastParticiple, "passive",
            "will be deprecated："},
        GrammarCase{"run", "It will run on your phone.", FormKind::base, "future", "will run："},
        GrammarCase{"run", "We are going to run it again.", FormKind::base, "future", "going to run："},
        GrammarCase{"run", "You can't run this twice.", FormKind::base, "modal", "can't run："},
        GrammarCase{"quit", "If I were you, I would quit.", FormKind::base, "conditional", "would quit："},
        GrammarCase{"post", "I was reluctant to post this.", FormKind::base, "infinitive", "to post："},
        GrammarCase{"give up", "Don't give up yet.", FormKind::base, "imperative", "Don't give up："},
        GrammarCase{"give up", "Please, don't give up.", FormKind::base, "imperative", "don't give up："},
        GrammarCase{"run", "Run the tests before you push.", FormKind::base, "imperative", "Run："},
        GrammarCase{"crashes", "The app crashes every time I open it.", FormKind::thirdPerson,
            "present_simple", "crashes："},
        GrammarCase{"gave\nup", "She gave up on Monday.", FormKind::past, "past_simple", "gave up："}));

INSTANTIATE_TEST_SUITE_P(NounsAndAdjectives, Grammar,
    testing::Values(
        GrammarCase{"comments", "My comments were removed.", FormKind::plural, "plural", "comments："},
        GrammarCase{
            "faster", "The new build is way faster.", FormKind::comparative, "comparative", "faster："},
        GrammarCase{
            "reluctant", "They are more reluctant now.", FormKind::base, "comparative", "more reluctant："},
        GrammarCase{"decision", "That was the best decision I made.", FormKind::base, "none", ""},
        GrammarCase{"patch", "The patch is out now.", FormKind::base, "none", ""}));

TEST(GrammarSense, FollowsThePartOfSpeech)
{
    EXPECT_EQ(explain(practiceLexicon(), {"commented", "He commented on my code."}).pos, "v.");
    EXPECT_EQ(explain(practiceLexicon(), {"comment", "Your comment is great."}).pos, "n.");
}

} // namespace nimbrelle::practice
