#include "wordbook/views/AddWordView.h"

#include "ai/AIError.h"
#include "support/Printers.h"
#include "wordbook/views/AddWordStage.h"

#include <QInputMethodEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyleOptionFrame>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

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

TEST_F(AddWordViewTest, AFieldShowsItsWholePlaceholder)
{
    hand.press("addSentence");
    for (const char *name : {"word", "sentence"}) {
        const auto &field = hand.at<QLineEdit>(name);
        QStyleOptionFrame option;
        option.initFrom(&field);
        const int inside =
            field.style()->subElementRect(QStyle::SE_LineEditContents, &option, &field).width();
        EXPECT_LE(field.fontMetrics().horizontalAdvance(field.placeholderText()), inside - 4) << name;
    }
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

} // namespace nimbrelle
