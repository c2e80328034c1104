#include "Secretive.h"
#include "XScene.h"
#include "platform/linux/x11/XClipboard.h"
#include "platform/linux/x11/XScreens.h"
#include "platform/linux/x11/XWindowSystem.h"

#include <QElapsedTimer>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QStandardPaths>

#include <csignal>
#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

const QString reading = u"I was reluctant to post this, but here we go.\n"
                        "The old call is deprecated, so half of the client had to be rewritten.\n"
                        "Nobody wanted to maintain it any longer.\n"_s;

class Marking : public XScene {
protected:
    void SetUp() override
    {
        XScene::SetUp();
        startProgram();
    }

    void read()
    {
        openEditor(reading);
        ASSERT_EQ(accessible.shownBy(program.id()).size(), 0);
    }

    void dragOver(const QString &from, const QString &to)
    {
        user.drag(inEditor(from).topLeft() + QPoint(1, 8), inEditor(to).bottomRight() - QPoint(1, 8));
    }
};

TEST_F(Marking, ADoubleClickGivesTheWordsCard)
{
    read();
    doubleClick(inEditor(u"reluctant"_s).center());
    ASSERT_TRUE(appears(u"意思"_s));
    EXPECT_EQ(textOf(u"单词"_s), u"reluctant"_s);
    EXPECT_EQ(textOf(u"意思"_s), u"不情愿的，勉强的"_s);
    EXPECT_EQ(textOf(u"原句"_s), u"I was reluctant to post this, but here we go."_s);
    EXPECT_EQ(find(u"Nimbrelle"_s)->area.topLeft(), inEditor(u"reluctant"_s).center() + QPoint(-24, 18));
}

TEST_F(Marking, TypingGoesOnInTheOtherProgramWhileTheCardOpensAndIsUsed)
{
    read();
    doubleClick(inEditor(u"reluctant"_s).center());
    ASSERT_TRUE(appears(u"保存"_s));
    press(u"更多"_s); // the first click into it already works
    EXPECT_TRUE(appears(u"收起"_s));
    type(u"eager"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return editorText().startsWith(u"I was eager to post"_s); }, 3000))
        << editorText().toStdString();
    press(u"保存"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return notebook().size() == 1; }, 3000));
    EXPECT_EQ(
        notebook().first().examples.value(0).sentence, u"I was reluctant to post this, but here we go."_s);
    EXPECT_EQ(notebook().first().examples.value(0).sourceApp, u"Mousepad"_s);
}

TEST_F(Marking, EscAndAClickElsewhereCloseTheCard)
{
    read();
    doubleClick(inEditor(u"deprecated"_s).center());
    ASSERT_TRUE(appears(u"意思"_s));
    user.tap(keysym::escape);
    EXPECT_TRUE(disappears(u"意思"_s, 500));
    click(inEditor(u"Nobody"_s).center());
    doubleClick(inEditor(u"deprecated"_s).center());
    ASSERT_TRUE(appears(u"意思"_s));
    click({1200, 700});
    EXPECT_TRUE(disappears(u"意思"_s, 500));
}

TEST_F(Marking, AClickIntoItsShadowReachesTheProgramBelow)
{
    if (QStandardPaths::findExecutable(u"picom"_s).isEmpty())
        GTEST_SKIP() << "there is no picom";
    Running compositor;
    compositor.start(u"picom"_s, {u"--config"_s, u"/dev/null"_s, u"--backend"_s, u"xrender"_s});
    XScreens screens(user.x);
    const XWindowSystem windows(user.x, screens);
    ASSERT_TRUE(QTest::qWaitFor([&] { return windows.isComposited(); }));
    read();
    const QPoint word = inEditor(u"reluctant"_s).center();
    doubleClick(word);
    ASSERT_TRUE(appears(u"意思"_s));
    shoot(u"shadow"_s);
    const QPoint card = word + QPoint(-24, 18);
    click(card + QPoint(-9, 30));
    EXPECT_TRUE(disappears(u"意思"_s));
    type(u"x"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return editorText().contains(u'x'); }, 3000));
    EXPECT_TRUE(editorText().startsWith(u"I was reluctant"_s)) << "the word is marked no more";
}

TEST_F(Marking, MovingAWindowWithAnOldMarkOpensNothing)
{
    read();
    doubleClick(inEditor(u"deprecated"_s).center());
    ASSERT_TRUE(appears(u"意思"_s));
    user.tap(keysym::escape);
    ASSERT_TRUE(disappears(u"意思"_s));
    const QRect before = inEditor(u"deprecated"_s);
    const QPoint title = accessible.shownBy(editor.id()).first().area.topLeft() + QPoint(150, 8);
    user.drag(title, title + QPoint(60, 40));
    ASSERT_TRUE(QTest::qWaitFor([&] { return inEditor(u"deprecated"_s) != before; }, 3000));
    EXPECT_FALSE(appears(u"意思"_s, 1000));
}

TEST_F(Marking, ADragOffersATranslationForFourSeconds)
{
    read();
    dragOver(u"The old"_s, u"rewritten."_s);
    ASSERT_TRUE(appears(u"翻译选中的文字"_s));
    shoot(u"offer"_s);
    QElapsedTimer shownFor;
    shownFor.start();
    ASSERT_TRUE(disappears(u"翻译选中的文字"_s, 6000));
    EXPECT_GT(shownFor.elapsed(), 3000);
    click(inEditor(u"Nobody"_s).center());
    dragOver(u"The old"_s, u"rewritten."_s);
    press(u"翻译选中的文字"_s);
    EXPECT_TRUE(appears(u"译文"_s));
}

TEST_F(Marking, ASecondLookupKnowsTheWordAndAsksForIt)
{
    read();
    doubleClick(inEditor(u"reluctant"_s).center());
    press(u"保存"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return notebook().size() == 1; }, 3000));
    user.tap(keysym::escape);
    ASSERT_TRUE(disappears(u"单词"_s));
    click(inEditor(u"Nobody"_s).center());
    doubleClick(inEditor(u"reluctant"_s).center());
    press(u"看答案"_s);
    ASSERT_TRUE(appears(u"想起来了"_s));
    press(u"想起来了"_s);
    ASSERT_TRUE(appears(u"意思"_s));
    EXPECT_TRUE(find(u"第 2 次"_s));
    EXPECT_EQ(notebook().first().lookupCount, 2);
    EXPECT_EQ(notebook().first().review.value_or(ReviewState()).reps, 1);
}

TEST_F(Marking, ACopyOnTheUsersBehalfLeavesTheClipboardAsItWas)
{
    const ClipboardSnapshot before{{{u"UTF8_STRING"_s, "早"}, {u"text/html"_s, "<b>early</b>"},
        {u"image/png"_s, QByteArray(300'000, 'p')}}};
    user.clipboard.restore(before);
    Secretive window;
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    doubleClick(window.geometry().center());
    ASSERT_TRUE(appears(u"意思"_s));
    EXPECT_EQ(textOf(u"单词"_s), u"reluctant"_s);
    EXPECT_EQ(window.copies, 1);
    EXPECT_EQ(QCoro::waitFor(user.clipboard.snapshot()), before);
    program.signal(SIGTERM); // the content is the program's to give by now; without a manager it goes with it
    EXPECT_TRUE(program.process().waitForFinished(5000));
    EXPECT_EQ(program.process().exitCode(), 0);
}

TEST_F(Marking, AMarkedWordStandsInItsOwnSentenceWhereTheScreenIsRead)
{
    QPlainTextEdit window; // tells screen readers nothing
    window.setFont(QFont(u"DejaVu Sans"_s, 12));
    window.setPlainText(u"Engineers were forced to admit that the bridge had failed."_s);
    window.setGeometry(300, 100, 700, 300);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QTextCursor found = window.document()->find(u"admit"_s);
    QTextCursor before = found;
    before.setPosition(found.selectionStart());
    const QRect word = window.cursorRect(before) | window.cursorRect(found);
    doubleClick(window.viewport()->mapToGlobal(word.center()));
    ASSERT_TRUE(appears(u"意思"_s, 8000));
    EXPECT_EQ(textOf(u"单词"_s), u"admit"_s);
    EXPECT_EQ(textOf(u"原句"_s), u"Engineers were forced to admit that the bridge had failed."_s);
}

TEST_F(Marking, AStoppedProgramHoldsNothingUp)
{
    read();
    const QPoint word = inEditor(u"reluctant"_s).center();
    doubleClick(word);
    ASSERT_TRUE(appears(u"意思"_s));
    user.tap(keysym::escape);
    ASSERT_TRUE(disappears(u"意思"_s));
    editor.signal(SIGSTOP);
    doubleClick(word);
    QTest::qWait(100); // the wait of the rules, then the questions that nobody answers
    QElapsedTimer time;
    time.start();
    shown(); // is answered from the program's event loop
    EXPECT_LT(time.elapsed(), 700);
    const QRect there = showPicture({u"He seemed hesitant at first."_s}, u"hesitant"_s);
    rest(there.center());
    EXPECT_TRUE(appears(u"意思"_s, 4000));
    EXPECT_EQ(textOf(u"单词"_s), u"hesitant"_s);
    editor.signal(SIGCONT);
}

} // namespace
