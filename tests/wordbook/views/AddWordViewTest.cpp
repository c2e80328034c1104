#include "wordbook/views/AddWordView.h"

#include "ai/AIError.h"
#include "card/views/CardStage.h"
#include "support/Printers.h"
#include "support/UserHand.h"
#include "wordbook/AddWordModel.h"

#include <QInputMethodEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

LookupResult giveUp()
{
    LookupResult result;
    result.explanation = Notebook::explained("give up", "He gave up.");
    result.explanation.phonetic = u"/ˌɡɪv ˈʌp/"_s;
    result.explanation.pos = u"phrase"_s;
    result.explanation.meaningZh = u"放弃，不再尝试"_s;
    result.explanation.register_ = u"casual"_s;
    result.explanation.definitionEn = u"to stop trying to do something"_s;
    result.aboutZh = u"口语里最常用 give up；语气更正式时用 abandon。"_s;
    result.alternatives = QList<LookupResult::Alternative>{
        {u"abandon"_s, u"彻底丢下、弃置（正式）"_s}, {u"drop it"_s, u"别提了，算了（口语）"_s}};
    return result;
}

struct AddWordStage {
    explicit AddWordStage(double scale = 1, Theme::Scheme scheme = Theme::Scheme::light) : theme(scale)
    {
        theme.setScheme(scheme);
        theme.applyToApplication();
        view.resize(view.sizeHint());
        view.show();
        view.activateWindow();
        hand.settle();
    }
    void look(const QString &word)
    {
        hand.type("word", word);
        hand.key(Qt::Key_Return);
    }
    void look(const QString &word, const LookupResult &answer)
    {
        look(word);
        ai.reply(answer);
        hand.settle();
    }

    Notebook notebook;
    FakeAI ai;
    FakeSpeaker speaker;
    Theme theme;
    AddWordModel model{notebook.config, notebook.store, ai.factory()};
    AddWordView view{theme, model, speaker};
    UserHand hand{view};
};

class AddWordViewTest : public testing::Test, protected AddWordStage { };

} // namespace

TEST_F(AddWordViewTest, ReturnLooksUpAndShowsThatItRuns)
{
    EXPECT_TRUE(hand.find("word")->hasFocus());
    EXPECT_EQ(hand.find("lookup")->property("kind"), u"primary"_s);
    look(u"放弃"_s);
    EXPECT_EQ(ai.calls().size(), 1);
    EXPECT_EQ(hand.text("lookup"), u"查询中…"_s);
    EXPECT_TRUE(hand.shows("spinner"));
    EXPECT_FALSE(hand.find("save"));
    const int before = view.height();
    ai.reply(giveUp());
    hand.settle();
    EXPECT_EQ(hand.text("lookup"), u"查询"_s);
    EXPECT_FALSE(hand.shows("spinner"));
    EXPECT_GT(view.height(), before); // the window was told to grow
    EXPECT_EQ(hand.text("meaning"), u"放弃，不再尝试"_s);
    EXPECT_THAT(hand.texts("alternative"), ElementsAre(u"abandon"_s, u"drop it"_s));
    EXPECT_EQ(hand.find("lookup")->property("kind"), u"outlined"_s);
    hand.press("speakWord");
    EXPECT_THAT(speaker.said, ElementsAre(u"give up"_s));
}

TEST_F(AddWordViewTest, ReturnBelongsToTheInputMethodWhileItComposes)
{
    auto *field = hand.find<QLineEdit>("word");
    QInputMethodEvent composing(u"fangqi"_s, {});
    QCoreApplication::sendEvent(field, &composing);
    hand.key(Qt::Key_Return);
    EXPECT_TRUE(ai.calls().isEmpty());
    QInputMethodEvent composed;
    composed.setCommitString(u"放弃"_s);
    QCoreApplication::sendEvent(field, &composed);
    hand.key(Qt::Key_Return);
    ASSERT_EQ(ai.calls().size(), 1);
    EXPECT_THAT(ai.calls().first().arguments, ElementsAre(u"放弃"_s));
}

TEST_F(AddWordViewTest, TheSentenceFieldComesWhenItIsAskedFor)
{
    EXPECT_FALSE(hand.shows("sentence"));
    hand.press("addSentence");
    EXPECT_TRUE(hand.find("sentence")->hasFocus());
    EXPECT_FALSE(hand.shows("addSentence"));
    hand.type("sentence", u"I was reluctant."_s);
    look(u"reluctant"_s);
    EXPECT_THAT(ai.calls().first().arguments, ElementsAre(u"reluctant"_s, u"I was reluctant."_s));
}

TEST_F(AddWordViewTest, TheKeyOnTheButtonSavesAndTheFieldIsReadyForTheNext)
{
    hand.key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(notebook.store.entries().isEmpty());
    look(u"放弃"_s, giveUp());
    EXPECT_FALSE(hand.find("knownNote"));
    hand.key(Qt::Key_S, Qt::ControlModifier);
    ASSERT_EQ(notebook.store.entries().size(), 1);
    EXPECT_EQ(hand.text("lastSaved"), u"已保存 give up"_s);
    EXPECT_FALSE(hand.find("headword"));
    EXPECT_EQ(hand.text("word"), QString());
    EXPECT_TRUE(hand.find("word")->hasFocus());
    EXPECT_EQ(view.height(), theme.points(220));

    look(u"give up"_s, giveUp());
    EXPECT_FALSE(hand.find("lastSaved"));
    EXPECT_EQ(hand.text("knownNote"), u"这个词已经在生词本里了，保存会把这个例句加进去。"_s);
    hand.press("addSpelling");
    EXPECT_EQ(hand.text("lastSaved"), u"已加入常拼 give up"_s);
    look(u"give up"_s, giveUp());
    EXPECT_EQ(hand.text("addSpelling"), u"已在常拼"_s);
    hand.press("reset");
    EXPECT_FALSE(hand.find("headword"));
    EXPECT_TRUE(hand.find("word")->hasFocus());
}

TEST_F(AddWordViewTest, AnAlternativeTakesThePlaceOfTheQuery)
{
    look(u"放弃"_s, giveUp());
    hand.press("lookupAlternative", 1);
    EXPECT_EQ(hand.text("word"), u"drop it"_s);
    EXPECT_THAT(ai.calls().last().arguments, ElementsAre(u"drop it"_s));
    EXPECT_TRUE(hand.find("word")->hasFocus());
}

TEST_F(AddWordViewTest, AWordThatComesToTheNotebookMeanwhileIsSeen)
{
    look(u"give up"_s, giveUp());
    notebook.save("give up");
    hand.settle();
    EXPECT_TRUE(hand.shows("knownNote"));
}

class AddWordLook : public testing::TestWithParam<std::tuple<Theme::Scheme, double>> { };

TEST_P(AddWordLook, NoStateCutsAnythingOff)
{
    const auto [scheme, scale] = GetParam();
    AddWordStage stage(scale, scheme);
    const auto keep = [&](const QString &name) {
        stage.hand.settle();
        stage.hand.expectWhole(name);
        stage.hand.expectApart(name);
        stage.hand.keep(
            u"add-%1-%2-%3"_s.arg(name, scheme == Theme::Scheme::dark ? u"dark"_s : u"light"_s).arg(scale),
            scale > 1 ? 1 : 2);
    };
    keep(u"empty"_s);
    stage.hand.press("addSentence");
    keep(u"sentence"_s);
    stage.look(u"放弃"_s);
    keep(u"running"_s);
    stage.ai.fail(AIError(AIError::Kind::noKey));
    keep(u"error"_s);
    stage.notebook.save("give up");
    stage.model.reset();
    stage.look(u"放弃"_s, giveUp());
    keep(u"found"_s);
    stage.view.resize(stage.view.minimumWidth(), stage.view.height());
    keep(u"narrow"_s);
    stage.view.resize(stage.view.sizeHint());
    stage.hand.press("save");
    keep(u"saved"_s);

    LookupResult full = giveUp();
    full.corrected = true;
    full.explanation.headword = u"pneumonoultramicroscopicsilicovolcanoconiosis"_s;
    for (int i = 0; i < 6; ++i)
        full.alternatives->append({u"a rather long way to say the same thing as before"_s,
            u"很长的说明，用来看一看一行放不下的时候会怎么样，应该换行而不是被切掉"_s});
    stage.look(u"pneumono"_s, full);
    keep(u"full"_s);
    EXPECT_EQ(stage.view.height(), stage.theme.points(560));
    EXPECT_GT(stage.hand.find<QScrollArea>("preview")->verticalScrollBar()->maximum(), 0);
    EXPECT_TRUE(stage.view.rect().contains(
        stage.hand.find("save")->mapTo(&stage.view, stage.hand.find("save")->rect().bottomRight())));
}

INSTANTIATE_TEST_SUITE_P(Schemes, AddWordLook,
    testing::Combine(testing::Values(Theme::Scheme::light, Theme::Scheme::dark), testing::Values(1.0, 2.0)));

} // namespace nimbrelle
