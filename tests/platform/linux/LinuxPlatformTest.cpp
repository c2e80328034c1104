#include "platform/linux/LinuxPlatform.h"

#include "support/Await.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

/// A session without a display, for as long as this lives.
struct NoDisplay {
    NoDisplay() { qunsetenv("DISPLAY"); }
    ~NoDisplay()
    {
        if (!before.isNull())
            qputenv("DISPLAY", before);
    }
    QByteArray before = qgetenv("DISPLAY");
};

/// Whether a task ends with this failure. Only a coroutine may ask: waiting for a task that has thrown
/// already never ends.
template <typename Failed, typename T> bool fails(QCoro::Task<T> task)
{
    const auto attempt = [](QCoro::Task<T> attempted) -> QCoro::Task<bool> {
        try {
            co_await attempted;
        } catch (const Failed &) {
            co_return true;
        }
        co_return false;
    };
    return QCoro::waitFor(attempt(std::move(task)));
}

TEST(LinuxPlatform, WithoutADisplayEachServiceSaysSoAndNothingFails)
{
    const NoDisplay nothing;
    LinuxPlatform platform;
    platform.desktop.input.start();
    EXPECT_FALSE(platform.desktop.input.canWatch());
    EXPECT_FALSE(platform.desktop.capture.isAllowed());
    EXPECT_FALSE(platform.permissions.state(Grant::accessibility).granted);
    EXPECT_FALSE(platform.permissions.state(Grant::screenCapture).note.isEmpty());
    EXPECT_TRUE(platform.desktop.screens.all().isEmpty());
    EXPECT_EQ(platform.desktop.pointer.location(), QPointF());
    EXPECT_EQ(QCoro::waitFor(platform.desktop.pointer.locate()), std::nullopt);
    EXPECT_EQ(platform.desktop.pointer.modifiers(), 0U);
    EXPECT_EQ(platform.desktop.frontApplication.current(), std::nullopt);
    EXPECT_EQ(await(platform.accessibility.focusedElement()), std::nullopt);
    EXPECT_FALSE(platform.desktop.keySender.sendCopy());
    platform.desktop.keySender.tapNothing();
    EXPECT_EQ(platform.desktop.windowAtPointer.current(), PointedWindow());
    EXPECT_FALSE(platform.desktop.windowAtPointer.isGrabbed());
    EXPECT_FALSE(platform.desktop.clipboard.isWrittenBy({.window = 1}));
    EXPECT_EQ(QCoro::waitFor(platform.desktop.clipboard.snapshot()), std::nullopt);
    EXPECT_EQ(QCoro::waitFor(platform.desktop.primarySelection.text()), std::nullopt);
    EXPECT_TRUE(fails<CaptureFailure>(platform.desktop.capture.capture(Screen{}, QRectF(0, 0, 10, 10))));
    platform.desktop.clipboard.restore({});
    platform.desktop.frontApplication.activate({});
}

TEST(LinuxPlatform, AStoppedRecognitionIsCancelled)
{
    TesseractRecognizer recognizer;
    std::stop_source stop;
    stop.request_stop();
    const Picture picture{100, 50, 1, QByteArray(4 * 100 * 50, '\xff')};
    EXPECT_TRUE(fails<Cancelled>(recognizer.recognize(picture, RecognitionStyle::plain, stop.get_token())));
    EXPECT_TRUE(QCoro::waitFor(recognizer.recognize(picture, RecognitionStyle::plain, {})).isEmpty());
}

} // namespace
