#include "support/Printers.h"
#include "wordbook/views/WordListStage.h"

#include <QScrollBar>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::Not;

namespace {

class WordListDeletionTest : public testing::Test, protected WordListStage {
protected:
    WordListDeletionTest()
    {
        fill();
        open();
    }
};

} // namespace

TEST_F(WordListDeletionTest, OnlyTheDeleteKeyDeletesAndOnlyARowThatIsSeenAsChosen)
{
    const auto openMenu = [this] {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(&list("wordRows"), &event);
        hand.settle();
    };
    ASSERT_TRUE(list("wordRows").hasFocus()); // which makes the first row the current one
    ASSERT_EQ(chosen("wordRows"), QString());
    hand.key(Qt::Key_Delete);
    openMenu();
    EXPECT_EQ(notebook.store.entries().size(), 10);
    EXPECT_FALSE(hand.shows("rowMenu"));
    click("wordRows", u"regression"_s);
    for (const auto modifier : {Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier})
        hand.key(Qt::Key_Delete, modifier);
    hand.key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(notebook.store.entries().size(), 10);
    list("wordRows").setFixedHeight(80);
    list("wordRows").verticalScrollBar()->setValue(0);
    hand.settle();
    hand.key(Qt::Key_Delete);
    EXPECT_EQ(notebook.store.entries().size(), 10) << "it is scrolled out of sight";
    click("wordRows", u"regression"_s);
    openMenu();
    pick("rowMenu", u"删除"_s);
    EXPECT_FALSE(notebook.store.findHeadword(u"regression"_s));
    hand.key(Qt::Key_Delete, Qt::KeypadModifier);
    EXPECT_FALSE(notebook.store.findHeadword(u"flaky"_s));
    EXPECT_EQ(notebook.store.entries().size(), 8);
}

TEST_F(WordListDeletionTest, ADeletionCanBeTakenBackForTenSeconds)
{
    EXPECT_FALSE(hand.shows("undoLine"));
    click("wordRows", u"regression"_s);
    hand.key(Qt::Key_Delete);
    EXPECT_EQ(hand.text("deleted"), u"已删除 regression"_s);
    EXPECT_TRUE(list("wordRows").hasFocus());
    const QStringList left = rows("wordRows");
    hand.key(Qt::Key_Delete); // flaky
    hand.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(rows("wordRows"), left);
    EXPECT_EQ(hand.text("headword"), u"flaky"_s);
    hand.press("tab3");
    view.close();
    view.show();
    hand.settle();
    EXPECT_EQ(hand.text("deleted"), u"已删除 regression"_s);
    hand.press("undoDeletion");
    EXPECT_EQ(hand.text("headword"), u"regression"_s) << "its tab is open again";
    EXPECT_EQ(chosen("wordRows"), u"regression"_s);
    EXPECT_FALSE(hand.shows("undoLine"));
    EXPECT_TRUE(list("wordRows").hasFocus());

    hand.key(Qt::Key_Delete);
    theme.setScheme(Theme::Scheme::dark);
    hand.settle();
    EXPECT_EQ(hand.text("deleted"), u"已删除 regression"_s) << "the page was made anew";
    notebook.clock.advance(std::chrono::seconds(10));
    hand.settle();
    EXPECT_FALSE(hand.shows("undoLine"));
    hand.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(notebook.store.findHeadword(u"regression"_s));
}

TEST_F(WordListDeletionTest, NoRowMovesWhenTheOfferComesOrGoes)
{
    SyncBundle bundle;
    for (int i = 0; i < 40; ++i)
        bundle.words.append(sampleWord(u"word %1"_s.arg(i), u"词"_s, std::nullopt, notebook.clock.now()));
    notebook.store.applySync(bundle);
    hand.settle();
    QScrollBar *bar = list("wordRows").verticalScrollBar();
    const auto top = [this](const QString &word) {
        return list("wordRows")
            .viewport()
            ->mapTo(&view, list("wordRows").visualRect(row("wordRows", word)).topLeft());
    };
    const auto end = [&] {
        notebook.clock.advance(std::chrono::seconds(10));
        hand.settle();
        EXPECT_FALSE(hand.shows("deleted"));
    };
    bar->setValue(200);
    QPoint before = top(u"word 8"_s);
    click("wordRows", u"word 10"_s, Qt::RightButton);
    pick("rowMenu", u"删除"_s);
    EXPECT_TRUE(hand.shows("deleted"));
    EXPECT_EQ(top(u"word 8"_s), before);
    end();
    EXPECT_EQ(top(u"word 8"_s), before);
    EXPECT_FALSE(hand.shows("undoLine"));

    click("wordRows", u"word 12"_s, Qt::RightButton);
    pick("rowMenu", u"删除"_s);
    bar->setValue(bar->maximum());
    hand.settle();
    before = top(u"word 38"_s);
    end();
    EXPECT_EQ(top(u"word 38"_s), before) << "though the list is at its end";
    EXPECT_TRUE(hand.shows("undoLine")) << "its empty ground stays";
    bar->setValue(bar->maximum() / 2);
    hand.settle();
    EXPECT_FALSE(hand.shows("undoLine"));
}

TEST_F(WordListDeletionTest, TheKeyboardDeletesOnAtTheLowerEdgeAndTakesTheLastRowBack)
{
    view.resize(view.minimumSize());
    hand.settle();
    click("wordRows", rows("wordRows").at(6)); // the last that is to be seen, where the line comes
    for (int i = 0; i < 3; ++i)
        hand.key(Qt::Key_Delete);
    EXPECT_EQ(notebook.store.entries().size(), 7);

    hand.type("search", u"reluctant"_s);
    click("wordRows", u"reluctant"_s);
    hand.key(Qt::Key_Delete);
    EXPECT_TRUE(hand.shows("emptyList"));
    hand.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(chosen("wordRows"), u"reluctant"_s);
    EXPECT_EQ(hand.text("search"), u"reluctant"_s) << "no typing was taken back";
}

TEST_F(WordListDeletionTest, NothingIsLeftOfTheLastRowThatIsDeleted)
{
    hand.type("search", u"flaky"_s);
    click("wordRows", u"flaky"_s);
    hand.key(Qt::Key_Delete);
    EXPECT_EQ(hand.text("emptyList"), u"没有找到"_s);
    EXPECT_EQ(hand.text("nothingChosen"), u"选一个词查看详情"_s);
    hand.type("search", {});
    hand.press("tab3");
    while (!notebook.store.sentenceNotes().isEmpty()) {
        click("noteRows", rows("noteRows").first());
        hand.key(Qt::Key_Delete);
    }
    EXPECT_EQ(hand.text("nothingChosen"), u"选一条笔记查看"_s);
}

TEST_F(WordListDeletionTest, TheMenuOfARowDeletesThatRow)
{
    click("wordRows", u"regression"_s);
    click("wordRows", u"rewrite"_s);
    click("wordRows", u"flaky"_s, Qt::RightButton);
    pick("rowMenu", u"删除"_s);
    EXPECT_FALSE(notebook.store.findHeadword(u"flaky"_s));
    EXPECT_EQ(notebook.store.deleted().size(), 1);
}

TEST_F(WordListDeletionTest, ExamplesAndExplanationsAreDeletedOneByOne)
{
    click("wordRows", u"regression"_s);
    hand.press("deleteExample", 1);
    EXPECT_EQ(notebook.word("regression").examples.size(), 1);
    EXPECT_FALSE(notebook.word("regression").examples.first().isGenerated);
    hand.press("deleteNote");
    EXPECT_TRUE(notebook.word("regression").notes->isEmpty());
    EXPECT_THAT(hand.texts("sectionTitle"), Not(Contains(u"AI 解释"_s)));
}

} // namespace nimbrelle
