#include "platform/linux/desktop/Stage.h"
#include "support/Printers.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QRasterWindow>

#include <gtest/gtest.h>
#include <xcb/composite.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

class RedCard : public QRasterWindow {
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(QRect(0, 0, width(), height()), Qt::red);
    }
};

class Capture : public Desktop { };

TEST_F(Capture, OwnWindowsAreNotInThePictureAndTheTextUnderThemIs)
{
    if (QStandardPaths::findExecutable(u"mousepad"_s).isEmpty())
        GTEST_SKIP() << "mousepad is not installed";
    ASSERT_TRUE(open(u"mousepad"_s, u"I was reluctant to post this."_s, {u"--disable-server"_s}));
    QTest::qWait(500);
    const Screen screen = platform.desktop.screens.all().constFirst();
    const QRect window = frontWindow();
    const QRectF area(QPointF(window.topLeft()), QSizeF(600, 200));
    const Picture before = finished(platform.desktop.capture.capture(screen, area));
    ASSERT_TRUE(before.isValid());
    EXPECT_EQ(before.points(), QSizeF(600, 200));

    RedCard card;
    card.setFlags(Qt::ToolTip | Qt::FramelessWindowHint);
    card.setGeometry(QRect(window.topLeft() + QPoint(-40, 10), QSize(500, 150)));
    card.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&card));
    QTest::qWait(100);
    QElapsedTimer time;
    time.start();
    const Picture after = finished(platform.desktop.capture.capture(screen, area));
    RecordProperty("coveredCaptureUs", static_cast<int>(time.nsecsElapsed() / 1000));
    qsizetype different = 0;
    for (qsizetype i = 0; i < before.pixels.size(); ++i)
        different += i % 4 != 3 && before.pixels.at(i) != after.pixels.at(i);
    EXPECT_LT(different, 500); // a blinking cursor at most

    const auto lines = finished(platform.recognizer.recognize(after, RecognitionStyle::plain, {}));
    const bool isRead = std::ranges::any_of(
        lines, [](const RecognizedLine &line) { return line.text.contains(u"reluctant"_s); });
    EXPECT_TRUE(isRead);
}

// The screen is the compositor's to paint, and it paints late: what has just gone is still on it.
TEST_F(Capture, WithACompositorTheWindowsOwnPixelsAreTaken)
{
    XConnection &other = otherClient.x;
    other.reply(xcb_composite_query_version_reply, xcb_composite_query_version(other.get(), 0, 4));
    xcb_composite_redirect_subwindows(other.get(), other.root(), XCB_COMPOSITE_REDIRECT_MANUAL);
    const xcb_window_t window = xcb_generate_id(other.get());
    const quint32 values[]{0x123456, 1}; // its ground, past the window manager
    xcb_create_window(other.get(), XCB_COPY_FROM_PARENT, window, other.root(), 100, 100, 60, 40, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT,
        values);
    xcb_map_window(other.get(), window);
    otherClient.sync();
    const Screen screen = platform.desktop.screens.all().constFirst();
    const auto firstPixel = [&] {
        const QByteArray pixels =
            finished(platform.desktop.capture.capture(screen, {110, 110, 40, 20})).pixels;
        return pixels.first(3).toHex();
    };
    EXPECT_NE(firstPixel(), "563412") << "nobody has painted it";
    xcb_set_selection_owner(other.get(), window, other.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    otherClient.sync();
    EXPECT_EQ(firstPixel(), "563412");
}

TEST_F(Capture, AnAreaIsCutToTheScreen)
{
    const Screen screen = platform.desktop.screens.all().constFirst();
    EXPECT_EQ(
        finished(platform.desktop.capture.capture(screen, {1200, 700, 760, 200})).points(), QSizeF(80, 100));
    EXPECT_FALSE(finished(platform.desktop.capture.capture(screen, {1300, 0, 10, 10})).isValid());
    EXPECT_FALSE(finished(platform.desktop.capture.capture({77, {}, {}, 1}, {0, 0, 10, 10})).isValid());
}

} // namespace
