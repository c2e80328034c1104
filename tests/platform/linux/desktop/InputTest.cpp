#include "platform/linux/desktop/Stage.h"
#include "support/Printers.h"

#include <QRasterWindow>

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

constexpr quint32 escape = 0xff1b;
constexpr quint32 altLeft = 0xffe9;
constexpr quint32 superLeft = 0xffeb;
constexpr quint32 controlLeft = 0xffe3;
constexpr quint32 letterA = 0x61;

class Input : public Desktop { };

TEST_F(Input, TellsClicksWithTheirCount)
{
    stranger.moveTo({400, 300});
    stranger.click(2);
    EXPECT_EQ(heard.take(), QStringLiteral("press, release 1, press, release 2"));
    QTest::qWait(450);
    stranger.click();
    EXPECT_EQ(heard.take(), QStringLiteral("press, release 1"));
    stranger.button(3, true);
    stranger.button(3, false);
    EXPECT_EQ(heard.take(), QString());
    stranger.button(5, true);
    stranger.button(5, false);
    EXPECT_EQ(heard.take(), QStringLiteral("scroll"));
}

TEST_F(Input, AModifierIsNoKeyPress)
{
    stranger.tap(letterA);
    stranger.tap(altLeft);
    stranger.tap(escape);
    stranger.key(superLeft, true);
    stranger.key(controlLeft, true);
    stranger.key(controlLeft, false);
    stranger.key(superLeft, false);
    EXPECT_EQ(heard.take(),
        QStringLiteral("key, held 80000, held 0, escape, held 100000, held 140000, held 100000, held 0"));
}

TEST_F(Input, AMoveWithAButtonHeldIsADrag)
{
    stranger.moveTo({300, 300});
    EXPECT_GT(heard.takeMoves(), 0);
    EXPECT_EQ(platform.desktop.pointer.location(), QPointF(300, 500));
    stranger.button(1, true);
    heard.take();
    stranger.moveTo({360, 300});
    EXPECT_EQ(heard.takeMoves(), 0);
    EXPECT_EQ(platform.desktop.pointer.pressedButtons(), 1U);
    stranger.button(1, false);
    EXPECT_EQ(heard.take(), QStringLiteral("release 1"));
}

TEST_F(Input, OwnWindowsAreLeftOut)
{
    QRasterWindow card;
    card.setFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    card.setGeometry(200, 200, 200, 100);
    card.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&card));
    stranger.moveTo({250, 250});
    heard.take();
    stranger.click(2);
    stranger.button(4, true);
    stranger.button(4, false);
    EXPECT_EQ(heard.take(), QString());
    stranger.moveTo({260, 250});
    EXPECT_GT(heard.takeMoves(), 0); // resting on the card keeps it
    stranger.drag({250, 250}, {600, 600}); // begun on the card, so ours to its end
    EXPECT_EQ(heard.take(), QString());

    QRasterWindow window;
    window.setGeometry(300, 300, 300, 200);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    heard.take();
    stranger.tap(letterA);
    EXPECT_EQ(heard.take(), QString());
    const QRect inside = frontWindow();
    stranger.moveTo(inside.topLeft() + QPoint(60, -8)); // its title bar
    stranger.click();
    EXPECT_EQ(heard.take(), QString());
    EXPECT_EQ(platform.desktop.frontApplication.current()->bundleID,
        platform.desktop.frontApplication.ownBundleID());
}

TEST_F(Input, OwnPostedKeysAreNotTold)
{
    ASSERT_TRUE(platform.desktop.keySender.sendCopy());
    EXPECT_EQ(heard.take(), QString());
    stranger.tap(letterA); // and nothing later is taken for our own
    EXPECT_EQ(heard.take(), QStringLiteral("key"));
    stranger.key(altLeft, true);
    heard.take();
    EXPECT_FALSE(platform.desktop.keySender.sendCopy());
    stranger.key(altLeft, false);
}

TEST_F(Input, TheOneScreenIsThere)
{
    const QList<Screen> screens = platform.desktop.screens.all();
    ASSERT_EQ(screens.size(), 1);
    EXPECT_EQ(screens.constFirst().frame, QRectF(0, 0, 1280, 800));
    EXPECT_EQ(screens.constFirst().scale, 1);
}

} // namespace
