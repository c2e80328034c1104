#include "support/Printers.h"
#include "wordbook/views/WordListStage.h"

#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolTip>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

class WordListViewTest : public testing::Test, protected WordListStage {
protected:
    WordListViewTest()
    {
        fill();
        open();
    }
    void openTab(const char *tab) { hand.press(tab); }
};

} // namespace

TEST_F(WordListViewTest, ShowsTheChosenWordWithAllThatIsKnown)
{
    EXPECT_EQ(hand.text("header"), u"在学 3 · 共 10 个"_s);
    EXPECT_EQ(hand.text("nothingChosen"), u"选一个词查看详情"_s);
    click("wordRows", u"regression"_s);
    EXPECT_EQ(hand.text("headword"), u"regression"_s);
    EXPECT_EQ(hand.text("register"), u"技术"_s);
    EXPECT_EQ(hand.text("history"), u"查过 5 次 · 在 3 天里遇到 · 2026-02-02 保存"_s);
    EXPECT_EQ(hand.text("stage"), u"在学"_s);
    EXPECT_EQ(hand.text("reviews"), u"下次复习：3 月 3 日 · 复习过 6 次"_s);
    EXPECT_TRUE(hand.shows("leech"));
    EXPECT_THAT(hand.texts("sectionTitle"),
        ElementsAre(u"词族"_s, u"形式图鉴"_s, u"例句"_s, u"AI 解释"_s, u"换个记法"_s));
    EXPECT_THAT(hand.texts("formKind"), ElementsAre(u"原形"_s, u"复数"_s));
    EXPECT_THAT(hand.texts("formText"), ElementsAre(u"regression"_s, u"???"_s));
    EXPECT_THAT(hand.texts("formCount"), ElementsAre(u"遇到 5 次"_s, u"还没遇到"_s));
    EXPECT_EQ(hand.text("originLead"), u"AI 例句 · "_s);
    hand.press("speakExample", 1);
    EXPECT_THAT(speaker.said, ElementsAre(u"The update caused a regression."_s));
    click("wordRows", u"ngl"_s);
    EXPECT_EQ(
        hand.text("noFamily"), u"生词本里还没有同一家的词。遇到 ngl 家族的其他词并保存，就会出现在这里。"_s);
    EXPECT_FALSE(hand.find("forms"));
}

TEST_F(WordListViewTest, OnlyPagesAndFilesAreLinks)
{
    const std::pair<const char *, bool> addresses[]{{"https://a.example/b", true}, {"http://a.example", true},
        {"file:///home/x/notes.pdf", true}, {"smb://a.example/b", false}, {"javascript:alert(1)", false},
        {"apt:hello", false}, {"a.example/b", false}};
    click("wordRows", u"regression"_s);
    for (const auto &[address, isLink] : addresses) {
        SyncBundle bundle = notebook.store.snapshot();
        for (WordEntry &word : bundle.words)
            for (Example &example : word.examples)
                example.sourceURL = QString::fromLatin1(address);
        notebook.store.applySync(bundle);
        hand.settle();
        EXPECT_EQ(hand.find<QPushButton>("source") != nullptr, isLink) << address;
    }
}

TEST_F(WordListViewTest, TheFamilyLeadsFromWordToWord)
{
    click("wordRows", u"regression"_s);
    hand.press("relative");
    EXPECT_EQ(hand.text("headword"), u"regressive"_s);
    EXPECT_EQ(chosen("wordRows"), u"regressive"_s);
}

TEST_F(WordListViewTest, SearchAndStageNarrowTheListAndKeepWhatIsChosen)
{
    click("wordRows", u"regression"_s);
    hand.key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(hand.find("search")->hasFocus());
    hand.type("search", u"REG"_s);
    EXPECT_THAT(rows("wordRows"), ElementsAre(u"regression"_s, u"regressive"_s));
    EXPECT_EQ(chosen("wordRows"), u"regression"_s);
    hand.type("search", u"不情愿"_s);
    EXPECT_THAT(rows("wordRows"), ElementsAre(u"reluctant"_s));
    EXPECT_EQ(chosen("wordRows"), QString());
    EXPECT_EQ(hand.text("headword"), u"regression"_s); // still being read
    hand.type("search", u"zzz"_s);
    EXPECT_EQ(hand.text("emptyList"), u"没有找到"_s);
    hand.key(Qt::Key_Escape);
    EXPECT_EQ(chosen("wordRows"), u"regression"_s);
    hand.press("stageFilter");
    pick("stageMenu", u"沉睡"_s);
    EXPECT_THAT(rows("wordRows"), ElementsAre(u"idempotent"_s));
    EXPECT_EQ(hand.text("stageFilter"), u"沉睡"_s);
    hand.press("stageFilter");
    pick("stageMenu", u"全部"_s);
    EXPECT_EQ(rows("wordRows").size(), 10);
}

TEST_F(WordListViewTest, TheKeyboardGoesThroughTheWords)
{
    hand.find("search")->setFocus();
    hand.key(Qt::Key_Down);
    hand.key(Qt::Key_Down);
    const QString first = hand.text("headword");
    hand.key(Qt::Key_Down);
    EXPECT_NE(hand.text("headword"), first);
    hand.key(Qt::Key_Up);
    EXPECT_EQ(hand.text("headword"), first);
    hand.key(Qt::Key_Delete);
    EXPECT_THAT(rows("wordRows"), Not(Contains(first)));
    EXPECT_EQ(hand.text("headword"), u"deprecate"_s); // the next, so that the keyboard can go on
    EXPECT_EQ(chosen("wordRows"), u"deprecate"_s);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(&list("wordRows"), &held);
    EXPECT_EQ(notebook.store.entries().size(), 9);
}

TEST_F(WordListViewTest, TabGoesThroughItInReadingOrder)
{
    click("wordRows", u"regression"_s);
    hand.find("tab0")->setFocus();
    QStringList passed;
    for (int i = 0; i < 10; ++i) {
        hand.key(Qt::Key_Tab);
        passed.append(view.window()->focusWidget()->objectName());
    }
    EXPECT_THAT(passed,
        ElementsAre(u"addWord"_s, u"search"_s, u"stageFilter"_s, u"wordRows"_s, u"detail"_s, u"speakWord"_s,
            u"adjust"_s, u"actionRest"_s, u"actionSpell"_s, u"relative"_s));
}

TEST_F(WordListViewTest, StagesAreChangedByButtonAndByMenu)
{
    click("wordRows", u"ngl"_s);
    hand.press("actionWant");
    EXPECT_TRUE(notebook.word("ngl").isWanted());
    EXPECT_EQ(hand.text("actionWant"), u"取消「想学」"_s);
    EXPECT_TRUE(hand.find<QPushButton>("actionWant")->hasFocus()); // though all of it is new
    hand.press("adjust");
    pick("adjustMenu", u"现在就开始学"_s);
    EXPECT_EQ(notebook.word("ngl").stage, Stage::learning);
    EXPECT_EQ(hand.text("header"), u"在学 4 · 共 10 个"_s);
    hand.press("actionRest");
    EXPECT_EQ(hand.text("stage"), u"休息"_s);
    notebook.configure([](AppConfig &config) { config.learningSlots = 3; });
    hand.settle();
    EXPECT_FALSE(hand.find("actionStart")->isEnabled());
}

TEST_F(WordListViewTest, AChangeElsewhereLeavesTheUserWhereHeIs)
{
    SyncBundle bundle = notebook.store.snapshot();
    for (int i = 0; i < 200; ++i)
        bundle.words.append(sampleWord(u"word %1"_s.arg(i), u"词"_s, std::nullopt, notebook.clock.now()));
    notebook.store.applySync(bundle);
    hand.settle();
    hand.type("search", u"word"_s);
    click("wordRows", u"word 100"_s);
    const QWidget *pane = hand.find("wordDetail");
    const QRect before = list("wordRows").visualRect(row("wordRows", u"word 100"_s));
    bundle.words.prepend(sampleWord(u"a new word"_s, u"词"_s, std::nullopt, notebook.clock.now()));
    bundle.words.removeAt(30);
    notebook.store.applySync(bundle);
    hand.settle();
    EXPECT_EQ(rows("wordRows").first(), u"a new word"_s);
    EXPECT_EQ(chosen("wordRows"), u"word 100"_s);
    EXPECT_EQ(list("wordRows").visualRect(row("wordRows", u"word 100"_s)), before);
    EXPECT_EQ(hand.text("search"), u"word"_s);
    EXPECT_EQ(hand.find("wordDetail"), pane); // nothing of it has changed
    notebook.store.remove(notebook.word("word 100").id); // as a merge would
    hand.settle();
    EXPECT_TRUE(hand.shows("nothingChosen"));
}

TEST_F(WordListViewTest, GrammarPointsCollectTheirSentences)
{
    openTab("tab1");
    EXPECT_EQ(hand.text("nothingChosen"), u"选一个语法点查看"_s);
    EXPECT_EQ(rows("grammarRows").first(), u"已解锁 1"_s);
    click("grammarRows", u"动名词"_s);
    EXPECT_EQ(hand.text("unlockState"), u"还没解锁"_s);
    EXPECT_EQ(hand.text("noEncounters"),
        u"在真实句子里遇到它的时候（查已保存的词，或者保存新词时），就会自动解锁并收集到这里。"_s);
    click("grammarRows", u"被动语态"_s);
    EXPECT_EQ(hand.text("unlockState"), u"遇到 1 次"_s);
    EXPECT_EQ(hand.text("sentence"), u"This method was deprecated in 3.2."_s);
    hand.type("search", u"zzz"_s);
    EXPECT_FALSE(hand.find("sentence"));
    hand.type("search", u"弃用"_s);
    hand.press("deleteEncounter");
    EXPECT_TRUE(notebook.store.grammarEncounters().isEmpty());
    EXPECT_EQ(hand.text("unlockState"), u"还没解锁"_s);
}

TEST_F(WordListViewTest, AffixesCollectTheirWords)
{
    openTab("tab2");
    EXPECT_FALSE(hand.shows("search"));
    EXPECT_EQ(hand.text("nothingChosen"), u"选一个词缀查看"_s);
    click("affixRows", u"re-"_s);
    EXPECT_EQ(hand.text("unlockState"), u"在 2 个词里遇到"_s);
    EXPECT_EQ(hand.text("examples"), u"常见的词：restart, rewrite, reload"_s);
    EXPECT_THAT(hand.texts("word"), ElementsAre(u"rewrite"_s, u"reinstall"_s));
    click("affixRows", u"-tion"_s);
    EXPECT_EQ(hand.text("noEncounters"), u"保存或再次查到一个带这个词缀的词时，就会自动解锁。"_s);
}

TEST_F(WordListViewTest, NotesAreSearchedReadAndDeleted)
{
    openTab("tab3");
    EXPECT_EQ(hand.text("nothingChosen"), u"选一条笔记查看"_s);
    EXPECT_EQ(hand.find<QLineEdit>("search")->placeholderText(), u"搜索笔记"_s);
    hand.type("search", u"worth"_s);
    EXPECT_THAT(rows("noteRows"), ElementsAre(u"拆一下句子结构"_s));
    hand.type("search", {});
    click("noteRows", u"为什么这么用？"_s);
    EXPECT_EQ(hand.text("answer"), u"turn out 表示「结果是」。"_s);
    hand.press("deleteNote");
    EXPECT_EQ(hand.text("question"), u"拆一下句子结构"_s);
    click("noteRows", u"拆一下句子结构"_s, Qt::RightButton);
    pick("rowMenu", u"删除"_s);
    EXPECT_EQ(hand.text("emptyList"),
        u"还没有句子笔记。\n框选翻译后点「为什么这么用？」，\n觉得解释有用就点「存为句子笔记」。"_s);
    openTab("tab0");
    hand.find("tab0")->setFocus();
    hand.key(Qt::Key_Right);
    EXPECT_TRUE(hand.shows("grammarRows"));
    EXPECT_TRUE(hand.find("tab1")->hasFocus());
}

TEST_F(WordListViewTest, ANewColourSchemeChangesNothingElse)
{
    hand.type("search", u"regress"_s);
    click("wordRows", u"regression"_s);
    theme.setScheme(Theme::Scheme::dark);
    hand.settle();
    EXPECT_EQ(hand.text("search"), u"regress"_s);
    EXPECT_EQ(chosen("wordRows"), u"regression"_s);
    EXPECT_EQ(hand.text("headword"), u"regression"_s);
    EXPECT_EQ(rows("wordRows").size(), 2);
    EXPECT_TRUE(list("wordRows").hasFocus());
}

TEST_F(WordListViewTest, MarksAndCutWordsSayWhatTheyAre)
{
    const auto tipsOf = [this](const QString &word) { // from right to left
        const QRect place = list("wordRows").visualRect(row("wordRows", word));
        QStringList tips;
        for (QPoint at(place.right(), place.center().y()); at.x() >= place.left(); at.rx() -= 4) {
            QHelpEvent help(QEvent::ToolTip, at, list("wordRows").viewport()->mapToGlobal(at));
            QCoreApplication::sendEvent(list("wordRows").viewport(), &help);
            if (const QString tip = QToolTip::text(); !tip.isEmpty() && !tips.contains(tip))
                tips.append(tip);
        }
        return tips;
    };
    EXPECT_THAT(tipsOf(u"regression"_s), ElementsAre(u"在学"_s, u"AI 解释"_s, u"常拼"_s));
    const QString cut = u"take it with a grain of salt and then some more"_s;
    EXPECT_THAT(tipsOf(cut), Contains(cut));
}

TEST(WordListView, AnEmptyNotebookSaysHowToBegin)
{
    WordListStage stage;
    stage.open();
    EXPECT_EQ(stage.hand.text("emptyList"),
        u"还没有保存的词。\n去网页上划一个英文单词试试，\n或者点右上角的 + 手动添加。"_s);
    QSignalSpy wanted(&stage.view, &WordListView::addWordRequested);
    stage.hand.press("addWord");
    EXPECT_EQ(wanted.size(), 1);
    stage.notebook.save("ship");
    stage.hand.settle();
    EXPECT_THAT(stage.rows("wordRows"), ElementsAre(u"ship"_s));
}

} // namespace nimbrelle
