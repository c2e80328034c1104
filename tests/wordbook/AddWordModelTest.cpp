#include "wordbook/AddWordModel.h"

#include "ai/AIError.h"
#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <stdexcept>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Kind = FakeAI::Call::Kind;

namespace {

class AddWordModelTest : public testing::Test {
protected:
    void look(const QString &word, const QString &sentence = {})
    {
        model.setWord(word);
        model.setSentence(sentence);
        model.lookup();
    }
    static LookupResult found(const char *headword)
    {
        return {.explanation = Notebook::explained(headword, "I gave up.")};
    }

    Notebook notebook;
    FakeAI ai;
    AddWordModel model{notebook.config, notebook.store, ai.factory()};
};

} // namespace

TEST_F(AddWordModelTest, TheSentenceGoesAlongOnlyWithAQueryInEnglish)
{
    struct Case {
        QString word, sentence;
        Kind kind;
        QStringList sent;
    };
    const QString sentence = u"I was reluctant."_s;
    const QList<Case> cases{{u" reluctant\n"_s, sentence, Kind::explain, {u"reluctant"_s, sentence}},
        {u"reluctant"_s, {}, Kind::lookup, {u"reluctant"_s}},
        {u"放弃"_s, sentence, Kind::lookup, {u"放弃"_s}},
        {u"give 放"_s, sentence, Kind::lookup, {u"give 放"_s}},
        {u"ひらがな"_s, sentence, Kind::explain, {u"ひらがな"_s, sentence}}};
    for (const Case &each : cases) {
        look(each.word, each.sentence);
        EXPECT_EQ(ai.calls().last().kind, each.kind) << each.word.toStdString();
        EXPECT_EQ(ai.calls().last().arguments, each.sent);
        if (each.kind == Kind::explain)
            ai.reply(Notebook::explained("reluctant"));
        else
            ai.reply(found("reluctant"));
        EXPECT_FALSE(model.isLoading());
        EXPECT_EQ(model.result()->explanation.headword, u"reluctant"_s);
        EXPECT_FALSE(model.result()->corrected);
    }
}

TEST_F(AddWordModelTest, AsksOnceForWhatIsNotBlank)
{
    look(u" \n\t"_s);
    EXPECT_TRUE(ai.calls().isEmpty());
    look(u"ship"_s);
    EXPECT_EQ(model.lookupLabel(), u"查询中…"_s);
    model.lookup();
    EXPECT_EQ(ai.calls().size(), 1);
    ai.reply(found("ship"));
    EXPECT_EQ(model.lookupLabel(), u"查询"_s);
}

TEST_F(AddWordModelTest, AFailureLeavesWhatWasTyped)
{
    look(u"ship"_s);
    ai.fail(AIError(AIError::Kind::noKey));
    EXPECT_EQ(model.error(), AIError(AIError::Kind::noKey).text());
    EXPECT_EQ(model.word(), u"ship"_s);
    EXPECT_FALSE(model.result());
    model.lookup();
    EXPECT_EQ(model.error(), QString());
    ai.fail(std::runtime_error("no memory"));
    EXPECT_FALSE(model.isLoading());
    EXPECT_EQ(model.error(), u"no memory"_s);
}

TEST_F(AddWordModelTest, ShowsTheSpellingThatTheAICorrected)
{
    look(u"relutcant %2"_s);
    LookupResult result = found("reluctant");
    result.corrected = true;
    ai.reply(result);
    EXPECT_EQ(model.correction(), u"你输入的是「relutcant %2」，正确写法是 reluctant"_s);
}

TEST_F(AddWordModelTest, AnAlternativeIsLookedUpAtOnce)
{
    look(u"放弃"_s);
    ai.reply(found("give up"));
    QSignalSpy written(&model, &AddWordModel::wordChanged);
    model.lookupAlternative(u"abandon"_s);
    EXPECT_EQ(model.word(), u"abandon"_s);
    EXPECT_EQ(written.size(), 1);
    EXPECT_FALSE(model.result());
    EXPECT_THAT(ai.calls().last().arguments, ElementsAre(u"abandon"_s));
}

TEST_F(AddWordModelTest, SavingKeepsTheWordAndBeginsAnewWithTheConfirmationOnShow)
{
    model.addSentence();
    look(u"give up"_s);
    ai.reply(found("give up"));
    EXPECT_FALSE(model.isKnown());
    QSignalSpy anew(&model, &AddWordModel::wasReset);
    model.save();
    EXPECT_EQ(anew.size(), 1);
    EXPECT_EQ(model.lastSaved(), u"已保存 give up"_s);
    EXPECT_EQ(model.word(), QString());
    EXPECT_FALSE(model.showSentence());
    EXPECT_FALSE(model.result());
    EXPECT_EQ(notebook.word("give up").examples.first().sourceApp, u"手动添加"_s);
    model.save(); // nothing is in hand
    EXPECT_EQ(notebook.store.entries().size(), 1);

    look(u"give up"_s);
    EXPECT_EQ(model.lastSaved(), QString());
    ai.reply(found("Give up"));
    EXPECT_TRUE(model.isKnown());
    EXPECT_FALSE(model.isSpelled());
    model.addSpelling();
    EXPECT_EQ(model.lastSaved(), u"已加入常拼 Give up"_s);
    EXPECT_TRUE(notebook.word("give up").isSpellPractice());

    look(u"give up"_s);
    ai.reply(found("give up"));
    EXPECT_TRUE(model.isSpelled());
    model.addSpelling(); // does nothing
    EXPECT_TRUE(model.result());
}

TEST_F(AddWordModelTest, AnAnswerThatComesAfterBeginningAnewIsDropped)
{
    look(u"ship"_s);
    model.reset();
    EXPECT_FALSE(model.isLoading());
    look(u"harbour"_s);
    ai.reply(found("harbour"));
    EXPECT_EQ(model.result()->explanation.headword, u"harbour"_s);
}

} // namespace nimbrelle
