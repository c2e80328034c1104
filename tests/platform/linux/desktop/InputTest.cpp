#include "platform/linux/desktop/Stage.h"
#include "support/Printers.h"

#include <QDBusMessage>
#include <QRasterWindow>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

constexpr quint32 escape = 0xff1b;
constexpr quint32 altLeft = 0xffe9;
constexpr quint32 superLeft = 0xffeb;
constexpr quint32 controlLeft = 0xffe3;
constexpr quint32 letterA = 0x61;

class Input : public Desktop { };

TEST_F(Input, TellsClicksWithTheirCount)
{
    otherClient.moveTo({400, 300});
    otherClient.click(2);
    EXPECT_EQ(recorder.take(), u"press 1, release 1, press 2, release 2"_s);
    QTest::qWait(450);
    otherClient.click();
    EXPECT_EQ(recorder.take(), u"press 1, release 1"_s);
    otherClient.button(3, true);
    otherClient.button(3, false);
    EXPECT_EQ(recorder.take(), QString());
    otherClient.button(5, true);
    otherClient.button(5, false);
    EXPECT_EQ(recorder.take(), u"scroll"_s);
}

TEST_F(Input, AModifierIsNoKeyPress)
{
    otherClient.tap(letterA);
    otherClient.tap(altLeft);
    otherClient.tap(escape);
    otherClient.key(superLeft, true);
    otherClient.key(controlLeft, true);
    otherClient.key(controlLeft, false);
    otherClient.key(superLeft, false);
    EXPECT_EQ(
        recorder.take(), u"key, held 80000, held 0, escape, held 100000, held 140000, held 100000, held 0"_s);
}

TEST_F(Input, AMoveWithAButtonHeldIsADrag)
{
    otherClient.moveTo({300, 300});
    EXPECT_GT(recorder.takeMoves(), 0);
    EXPECT_EQ(platform.desktop.pointer.location(), QPointF(300, 500));
    EXPECT_EQ(QCoro::waitFor(platform.desktop.pointer.locate()), QPointF(300, 500));
    otherClient.button(1, true);
    recorder.take();
    otherClient.moveTo({360, 300});
    EXPECT_GT(recorder.takeMoves(u"drag"_s), 0);
    otherClient.moveTo({380, 300});
    EXPECT_EQ(recorder.takeMoves(), 0);
    EXPECT_EQ(platform.desktop.pointer.pressedButtons(), 1U);
    otherClient.button(1, false);
    EXPECT_EQ(recorder.take(), u"release 1"_s);
}

TEST_F(Input, OwnWindowsAreLeftOut)
{
    QRasterWindow card;
    card.setFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    card.setGeometry(200, 200, 200, 100);
    card.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&card));
    otherClient.moveTo({250, 250});
    recorder.take();
    otherClient.click(2);
    otherClient.button(4, true);
    otherClient.button(4, false);
    EXPECT_EQ(recorder.take(), QString());
    otherClient.moveTo({260, 250});
    EXPECT_GT(recorder.takeMoves(), 0); // resting on the card keeps it
    otherClient.drag({250, 250}, {600, 600}); // begun on the card, so ours to its end
    EXPECT_EQ(recorder.takeMoves(u"drag"_s), 0);
    otherClient.drag({250, 250}, {600, 600});
    EXPECT_EQ(recorder.take(), QString());

    QRasterWindow window;
    window.setGeometry(300, 300, 300, 200);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    recorder.take();
    otherClient.tap(letterA);
    EXPECT_EQ(recorder.take(), QString());
    const QRect inside = frontWindow();
    otherClient.moveTo(inside.topLeft() + QPoint(60, -8)); // its title bar
    otherClient.click();
    EXPECT_EQ(recorder.take(), QString());
    EXPECT_EQ(platform.desktop.frontApplication.current()->bundleID,
        platform.desktop.frontApplication.ownBundleID());
}

TEST_F(Input, OwnPostedKeysAreNotTold)
{
    ASSERT_TRUE(platform.desktop.keySender.sendCopy());
    EXPECT_EQ(recorder.take(), QString());
    otherClient.tap(letterA); // and nothing later is taken for our own
    EXPECT_EQ(recorder.take(), u"key"_s);
    otherClient.key(altLeft, true);
    recorder.take();
    EXPECT_FALSE(platform.desktop.keySender.sendCopy());
    platform.desktop.keySender.tapNothing();
    EXPECT_EQ(recorder.take(), QString()) << "a tap of ours ends no hold";
    otherClient.key(altLeft, false);
    EXPECT_EQ(recorder.take(), u"held 0"_s);
}

TEST_F(Input, WhatLiesUnderThePointerIsKnown)
{
    const XWindowAtPointer &window = platform.desktop.windowAtPointer;
    ASSERT_TRUE(open(u"mousepad"_s, u"text"_s, {u"--disable-server"_s}));
    const QRect editor = frontWindow();
    otherClient.moveTo(editor.center());
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.current().hasTextCursor; }, 5000));
    const PointedWindow inside = window.current();
    EXPECT_EQ(inside.kind, PointedWindow::Kind::content);
    EXPECT_EQ(inside.application, platform.desktop.frontApplication.current());
    EXPECT_EQ(
        inside.area, QRectF(editor.x(), 800 - editor.y() - editor.height(), editor.width(), editor.height()));
    otherClient.moveTo(editor.topLeft() + QPoint(60, -8)); // its title bar
    EXPECT_EQ(window.current().kind, PointedWindow::Kind::other);
    otherClient.moveTo({5, 795});
    EXPECT_EQ(window.current(), PointedWindow());

    XConnection &x = otherClient.x;
    const xcb_window_t menu = xcb_generate_id(x.get());
    const quint32 unmanaged = 1;
    xcb_create_window(x.get(), 0, menu, x.root(), 0, 700, 100, 100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, 0,
        XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    const xcb_atom_t type = x.atom("_NET_WM_WINDOW_TYPE_POPUP_MENU");
    xcb_change_property(
        x.get(), XCB_PROP_MODE_REPLACE, menu, x.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
    xcb_map_window(x.get(), menu);
    otherClient.sync();
    EXPECT_EQ(window.current().kind, PointedWindow::Kind::menu);

    EXPECT_FALSE(window.isGrabbed());
    const auto grab = x.reply(xcb_grab_pointer_reply,
        xcb_grab_pointer(x.get(), 0, menu, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, 0, 0, 0));
    ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    EXPECT_TRUE(window.isGrabbed());
    xcb_ungrab_pointer(x.get(), XCB_CURRENT_TIME);
    otherClient.sync();
    EXPECT_FALSE(window.isGrabbed());

    QRasterWindow own;
    own.setFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    own.setGeometry(200, 200, 200, 100);
    own.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&own));
    otherClient.moveTo({250, 250});
    EXPECT_EQ(window.current().kind, PointedWindow::Kind::own);
}

TEST_F(Input, ALockIsKnownUntilItEndsOrItsLockerIsGone)
{
    const auto tell = [](const QDBusConnection &bus, bool isActive) {
        QDBusMessage signal = QDBusMessage::createSignal(
            u"/ScreenSaver"_s, u"org.freedesktop.ScreenSaver"_s, u"ActiveChanged"_s);
        signal << isActive;
        bus.send(signal);
    };
    const auto becomes = [this](bool isLocked) {
        return QTest::qWaitFor([&] { return platform.lock.isLocked() == isLocked; }, 2000);
    };
    {
        const auto locker = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"locker"_s);
        tell(locker, true);
        EXPECT_TRUE(becomes(true));
        tell(locker, false);
        EXPECT_TRUE(becomes(false));
        tell(locker, true);
        EXPECT_TRUE(becomes(true));
        QTest::qWait(100); // it is watched
    }
    QDBusConnection::disconnectFromBus(u"locker"_s);
    EXPECT_TRUE(becomes(false));
}

TEST_F(Input, TheOneScreenIsThere)
{
    const QList<Screen> screens = platform.desktop.screens.all();
    ASSERT_EQ(screens.size(), 1);
    EXPECT_EQ(screens.constFirst().frame, QRectF(0, 0, 1280, 800));
    EXPECT_EQ(screens.constFirst().scale, 1);
}

} // namespace
