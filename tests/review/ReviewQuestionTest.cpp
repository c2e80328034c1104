#include "review/ReviewQuestion.h"

#include "support/Printers.h"
#include "support/Words.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

WordEntry atLevel(qint64 level, const QString &headword)
{
    WordEntry word = wordNamed(headword);
    word.spellLevel = level;
    return word;
}

WordEntry full(const QString &headword, const QString &sentence, const QStringList &past = {})
{
    WordEntry word = atLevel(3, headword);
    word.examples = {exampleOf(sentence)};
    if (!past.isEmpty())
        word.inflections = {{u"past"_s, past.first()}};
    return word;
}

TEST(ReviewQuestion, AsksWithTheNewestSentenceReallyMet)
{
    WordEntry word = wordNamed(u"run"_s);
    EXPECT_EQ(ReviewQuestion::example(word), std::nullopt);
    word.examples = {exampleOf(u"met first"_s), exampleOf(u"met last"_s),
        exampleOf(u"made"_s, Origin::generated), exampleOf(QString())};
    EXPECT_EQ(ReviewQuestion::make(word).sentence, u"met last"_s);
    EXPECT_EQ(ReviewQuestion::make(word).type, QuestionType(Recognize{}));
    word.examples = {exampleOf(u"made first"_s, Origin::generated),
        exampleOf(u"made last"_s, Origin::generated), exampleOf(QString(), Origin::generated)};
    EXPECT_EQ(ReviewQuestion::make(word).sentence, u"made last"_s);
    EXPECT_NE(ReviewQuestion::make(word).id, ReviewQuestion::make(word).id);
}

TEST(ReviewQuestion, TakesTheModeOfTheLevel)
{
    using enum SpellMode;
    const std::pair<qint64, SpellMode> modes[]{
        {-1, copy}, {0, copy}, {1, fill}, {2, chunks}, {3, SpellMode::full}, {4, dictation}, {9, dictation}};
    for (const auto &[level, mode] : modes)
        EXPECT_EQ(ReviewQuestion::spelling(atLevel(level, u"reluctant"_s)).mode(), mode) << level;
    EXPECT_EQ(ReviewQuestion::spelling(wordNamed(u"run"_s)).mode(), copy);
}

TEST(ReviewQuestion, BlanksByLengthAndFallsBackFromChunks)
{
    EXPECT_EQ(ReviewQuestion::spelling(atLevel(1, u"aioue"_s)).scaffold, u"aio_e"_s);
    EXPECT_EQ(ReviewQuestion::spelling(atLevel(1, u"aioueb"_s)).scaffold, u"ai__eb"_s);
    const ReviewQuestion undivided = ReviewQuestion::spelling(atLevel(2, u"ngl"_s));
    EXPECT_EQ(undivided.mode(), SpellMode::fill);
    EXPECT_EQ(undivided.scaffold, u"n__"_s) << "two blanks, however short";
    WordEntry word = atLevel(2, u"unlock"_s);
    word.affixes = {Affix::un};
    EXPECT_EQ(ReviewQuestion::spelling(word).scaffold, u"un · ____"_s);
}

TEST(ReviewQuestion, BlanksTheFormThatTheSentenceNeeds)
{
    struct Sample {
        WordEntry word;
        QString cloze; ///< empty: none
        QString answer;
    };
    WordEntry running = full(u"run"_s, u"The run is running."_s);
    running.forms = {{FormKind::ing, u"running"_s, Timestamp{}, 1, {}}};
    WordEntry unusable = full(u"run"_s, u"A word."_s);
    unusable.forms = {{FormKind::ing, QString(), Timestamp{}, 1, {}}};
    const Sample samples[]{{full(u"run"_s, u"Ran ran."_s, {u"ran"_s}), u"____ ran."_s, u"Ran"_s},
        {running, u"The run is _______."_s, u"running"_s},
        {full(u"give up on"_s, u"I give up on it"_s), u"I __________ it"_s, u"give up on"_s},
        {full(u"give up"_s, u"I give\nup"_s), {}, u"give up"_s}, {unusable, {}, u"run"_s}};
    for (const Sample &sample : samples) {
        const ReviewQuestion question = ReviewQuestion::spelling(sample.word);
        EXPECT_EQ(question.clozeSentence.value_or(QString()), sample.cloze);
        EXPECT_EQ(question.answer, sample.answer);
        EXPECT_EQ(question.sentence, sample.word.examples.first().sentence);
        EXPECT_EQ(question.mode(), SpellMode::full);
    }
    EXPECT_EQ(ReviewQuestion::spelling(atLevel(3, u"run"_s)).clozeSentence, std::nullopt);
}

TEST(ReviewQuestion, HintsAtTheForm)
{
    const QString ran = u"ran"_s;
    EXPECT_EQ(ReviewQuestion::spelling(full(u"run"_s, u"RAN"_s, {ran})).formHint(), u"要用 run 的过去式"_s);
    EXPECT_EQ(ReviewQuestion::spelling(full(u"run"_s, u"Run"_s, {ran})).formHint(), std::nullopt);
    ReviewQuestion question = ReviewQuestion::make(wordNamed(u"run"_s));
    question.answer = u"ran"_s;
    EXPECT_EQ(question.formHint(), u"注意这里不是原形"_s);
}

} // namespace
