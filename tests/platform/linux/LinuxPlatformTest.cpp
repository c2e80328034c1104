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

TEST(LinuxPlatform, WithoutADisplayEachServiceSaysSoAndNothingFails)
{
    const NoDisplay nothing;
    LinuxPlatform platform;
    platform.input.start();
    EXPECT_FALSE(platform.input.canWatch());
    EXPECT_FALSE(platform.capture.isAllowed());
    EXPECT_FALSE(platform.permissions.state(Grant::accessibility).granted);
    EXPECT_FALSE(platform.permissions.state(Grant::screenCapture).note.isEmpty());
    EXPECT_TRUE(platform.screens.all().isEmpty());
    EXPECT_EQ(platform.pointer.location(), QPointF());
    EXPECT_EQ(platform.pointer.modifiers(), 0U);
    EXPECT_EQ(platform.frontApplication.current(), std::nullopt);
    EXPECT_EQ(platform.accessibility.focusedElement(), std::nullopt);
    EXPECT_FALSE(platform.keySender.sendCopy());
    EXPECT_EQ(await(platform.clipboard.snapshot()), std::nullopt);
    EXPECT_EQ(await(platform.primarySelection.text()), std::nullopt);
    EXPECT_THROW(await(platform.capture.capture(Screen{}, QRectF(0, 0, 10, 10))), CaptureFailure);
    platform.clipboard.restore({});
    platform.frontApplication.activate({});
}

TEST(LinuxPlatform, AStoppedRecognitionIsCancelled)
{
    TesseractRecogniser recogniser;
    std::stop_source stop;
    stop.request_stop();
    const Picture picture{100, 50, 1, QByteArray(4 * 100 * 50, '\xff')};
    EXPECT_THROW(await(recogniser.recognise(picture, RecognitionStyle::plain, stop.get_token())), Cancelled);
    EXPECT_TRUE(await(recogniser.recognise(picture, RecognitionStyle::plain, {})).isEmpty());
}

} // namespace
