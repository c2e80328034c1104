#include "platform/linux/desktop/Stage.h"
#include "screen/RegionSelector.h"
#include "screen/views/RegionOverlayWindow.h"
#include "support/FakeDesktop.h"
#include "support/Printers.h"
#include "widgets/Theme.h"

#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QScreen>

#include <gtest/gtest.h>

/// The overlay on a real X session with a window manager and no compositor.
namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 escapeKey = 0xFF1B;
constexpr quint32 letterKey = 0x61;

class RegionOverlayTest : public Desktop {
protected:
    void SetUp() override
    {
        Desktop::SetUp();
        reader.setStyleSheet(u"background: white; border: none"_s);
        reader.setGeometry(200, 200, 500, 300);
        reader.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&reader));
        reader.setFocus();
    }
    void begin()
    {
        selector.begin([this](QRectF frame) { frames.append(frame); });
        ASSERT_TRUE(QTest::qWaitFor([] { return overlayWidget() && overlayWidget()->isActiveWindow(); }));
        QTest::qWait(50);
    }
    static QWidget *overlayWidget()
    {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (widget->objectName() == u"regionOverlay" && widget->isVisible())
                return widget;
        return nullptr;
    }
    xcb_window_t focus() const
    {
        const auto reply =
            otherClient.x.reply(xcb_get_input_focus_reply, xcb_get_input_focus(otherClient.x.get()));
        return reply ? reply->focus : XCB_WINDOW_NONE;
    }
    static QImage picture() { return QGuiApplication::primaryScreen()->grabWindow().toImage(); }
    void keep(const QString &name) const
    {
        if (const QString look = qEnvironmentVariable("NIMBRELLE_LOOK_DIR"); !look.isEmpty())
            picture().save(look + u'/' + name + u".png"_s);
    }

    Theme theme;
    FakeWindowSystem windowSystem;
    RegionOverlayWindow overlay{theme, windowSystem};
    RegionSelector selector{
        platform.desktop.screens, platform.desktop.pointer, platform.desktop.frontApplication, overlay};
    QPlainTextEdit reader;
    QList<QRectF> frames;
};

TEST_F(RegionOverlayTest, DimsTheScreenButNotWhatIsFramed)
{
    const QRgb page = picture().pixel(450, 450);
    begin();
    EXPECT_LT(qRed(picture().pixel(450, 450)), qRed(page));
    otherClient.moveTo({300, 300});
    otherClient.button(1, true);
    QTest::qWait(20);
    otherClient.moveTo({600, 420});
    ASSERT_TRUE(QTest::qWaitFor([&] { return picture().pixel(450, 400) == page; }));
    keep(u"region-frame"_s);
    EXPECT_LT(qRed(picture().pixel(650, 450)), qRed(page));
    EXPECT_EQ(picture().pixel(450, 420), theme.colour(Tone::accentLine).rgb()); // the edge
    otherClient.button(1, false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !frames.isEmpty(); }));
    EXPECT_EQ(frames, QList{QRectF(300, 800 - 420, 300, 120)});
    EXPECT_FALSE(overlayWidget());
    EXPECT_EQ(picture().pixel(650, 450), page);
}

TEST_F(RegionOverlayTest, EscapeGivesUpAndNoKeyReachesTheProgramBelow)
{
    begin();
    otherClient.tap(letterKey);
    otherClient.tap(escapeKey);
    ASSERT_TRUE(QTest::qWaitFor([] { return !overlayWidget(); }));
    EXPECT_TRUE(frames.isEmpty());
    ASSERT_TRUE(QTest::qWaitFor([&] { return focus() == reader.winId(); }));
    otherClient.tap(letterKey);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !reader.toPlainText().isEmpty(); }));
    EXPECT_EQ(reader.toPlainText(), u"a"_s); // only the second one
}

TEST_F(RegionOverlayTest, WaitsForAKeyboardThatIsHeldByAnother)
{
    ASSERT_TRUE(reader.windowHandle());
    XConnection &other = otherClient.x;
    const auto held = other.reply(xcb_grab_keyboard_reply,
        xcb_grab_keyboard(
            other.get(), 0, other.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    ASSERT_EQ(held->status, XCB_GRAB_STATUS_SUCCESS);
    selector.begin([this](QRectF frame) { frames.append(frame); });
    ASSERT_TRUE(QTest::qWaitFor([] { return overlayWidget() != nullptr; }));
    otherClient.tap(escapeKey);
    QTest::qWait(60);
    EXPECT_TRUE(overlayWidget());
    xcb_ungrab_keyboard(other.get(), XCB_CURRENT_TIME);
    xcb_flush(other.get());
    QTest::qWait(120);
    otherClient.tap(escapeKey);
    EXPECT_TRUE(QTest::qWaitFor([] { return !overlayWidget(); }));
}

TEST_F(RegionOverlayTest, ANewBeginningEndsTheEarlierOne)
{
    begin();
    begin();
    selector.cancel();
    QTest::qWait(20);
    EXPECT_FALSE(overlayWidget());
    EXPECT_TRUE(frames.isEmpty());
}

} // namespace
} // namespace nimbrelle
