#include "Secretive.h"
#include "XScene.h"
#include "platform/linux/x11/XFrontApplication.h"

#include <QMenuBar>
#include <QStandardPaths>

#include <csignal>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

class NoHarm : public XScene {
protected:
    void SetUp() override
    {
        XScene::SetUp();
        startProgram();
    }

    bool isInFront(const QString &title)
    {
        return QTest::qWaitFor(
            [&] {
                return front.current()
                    .value_or(Application())
                    .windowTitle.value_or(QString())
                    .contains(title);
            },
            20'000);
    }

    XFrontApplication front{user.x};
};

TEST_F(NoHarm, ADragThatMarksNoTextPressesNoKey)
{
    Secretive canvas(Qt::ArrowCursor);
    canvas.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&canvas));
    const auto middle = [&] { return canvas.geometry().center(); };
    const auto drag = [&](QPoint from, QPoint to) {
        user.drag(from, to);
        QTest::qWait(200); // the wait of the rules is over
    };
    drag(middle(), middle() + QPoint(60, 40));
    canvas.setCursor(Qt::SizeVerCursor);
    drag(middle(), middle() + QPoint(60, 40));
    canvas.setCursor(Qt::IBeamCursor);
    const QPoint before = canvas.pos();
    const QPoint titleBar = canvas.geometry().topLeft() + QPoint(120, -10);
    drag(titleBar, titleBar + QPoint(30, 30));
    EXPECT_TRUE(QTest::qWaitFor([&] { return canvas.pos() != before; }));
    EXPECT_EQ(canvas.copies, 0);
    doubleClick(middle()); // while here it is
    ASSERT_TRUE(appears(u"意思"_s));
    EXPECT_EQ(canvas.copies, 1);
}

TEST_F(NoHarm, APlayerPlaysOn)
{
    if (QStandardPaths::findExecutable(u"mpv"_s).isEmpty())
        GTEST_SKIP() << "mpv is not installed";
    Running player;
    player.start(u"mpv"_s,
        {u"--no-config"_s, u"--vo=x11"_s, u"--ao=null"_s, u"--force-window=yes"_s, u"--idle=yes"_s,
            u"--geometry=600x400+200+150"_s, u"--input-terminal=no"_s, u"--title=A player"_s,
            u"--no-window-dragging"_s});
    ASSERT_TRUE(isInFront(u"A player"_s)) << player.process().readAll().toStdString();
    user.drag({350, 300}, {500, 350});
    EXPECT_FALSE(player.process().waitForFinished(1000));
}

TEST_F(NoHarm, AProgramThatWakesLateGivesTheClipboardBack)
{
    Running other; // without the bus, it is asked nothing that could tell that it hangs
    other.start(QCoreApplication::applicationFilePath(), {u"--secretive"_s},
        {{u"DBUS_SESSION_BUS_ADDRESS"_s, u"disabled:"_s}});
    ASSERT_TRUE(isInFront(u"Secretive"_s));
    const ClipboardSnapshot before{{{u"UTF8_STRING"_s, "早"}, {u"text/html"_s, "<b>early</b>"}}};
    user.clipboard.restore(before);
    const QPoint inside(500, 250);
    user.moveTo(inside);
    QTest::qWait(200); // it has its pointer
    other.signal(SIGSTOP);
    doubleClick(inside);
    QTest::qWait(1000); // given up long since
    click(inside); // and the user is impatient
    QTest::qWait(300);
    const quint64 count = user.clipboard.changeCount();
    other.signal(SIGCONT);
    EXPECT_TRUE(QTest::qWaitFor([&] { return user.clipboard.changeCount() >= count + 2; }, 3000));
    EXPECT_EQ(QCoro::waitFor(user.clipboard.snapshot()), before);
}

TEST_F(NoHarm, TheReleaseOfTheHeldKeyOpensNoMenu)
{
    const QRect word = showPicture({u"I was reluctant to post this, but here we go."_s}, u"reluctant"_s);
    QMenuBar bar(&picture);
    bar.addMenu(u"&File"_s)->addAction(u"&Open"_s);
    bar.show();
    const auto isMenuChosen = [&] { return bar.activeAction() != nullptr || bar.hasFocus(); };
    user.moveTo(word.center());
    user.key(keysym::alt, true);
    ASSERT_TRUE(appears(u"意思"_s));
    user.key(keysym::alt, false);
    QTest::qWait(200);
    EXPECT_FALSE(isMenuChosen());
    EXPECT_TRUE(find(u"意思"_s));
    user.tap(keysym::alt);
    EXPECT_TRUE(QTest::qWaitFor(isMenuChosen, 2000)) << "what the key does when pressed alone";
}

} // namespace
