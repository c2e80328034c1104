#include "platform/linux/x11/ScreenLayout.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

/// A main monitor that is not at the root window's corner, one left of it, a doubled one above, one below.
const Monitor mainOne{1, {1920, 720, 1280, 800}, {1920, 750, 1280, 770}, 1};
const Monitor leftOne{2, {0, 1000, 1920, 1080}, {0, 1000, 1920, 1080}, 1};
const Monitor doubledAbove{3, {1920, 0, 1440, 720}, {1920, 0, 1440, 720}, 2};
const ScreenLayout layout({mainOne, leftOne, doubledAbove});

TEST(ScreenLayout, TheOriginIsTheLowerLeftCornerOfTheMainMonitor)
{
    const QList<Screen> screens = layout.screens();
    EXPECT_EQ(screens.at(0).frame, QRectF(0, 0, 1280, 800));
    EXPECT_EQ(screens.at(0).workArea, QRectF(0, 0, 1280, 770));
    EXPECT_EQ(screens.at(1).frame, QRectF(-1920, -560, 1920, 1080));
    EXPECT_EQ(screens.at(2).frame, QRectF(0, 1160, 720, 360));
    EXPECT_EQ(screens.at(2).scale, 2);
}

TEST(ScreenLayout, PixelsBecomePointsOfTheScreenThatShowsThem)
{
    const struct {
        QPoint pixel;
        QPointF point;
        std::optional<quint32> screen;
    } cases[] = {
        {{1920, 720}, {0, 800}, 1}, {{3199, 1519}, {1279, 1}, 1}, {{1919, 1519}, {-1, 1}, 2},
        {{0, 2079}, {-1920, -559}, 2}, {{1920, 0}, {0, 1520}, 3}, {{2020, 100}, {50, 1470}, 3},
        {{1920, 719}, {0, 1160.5}, 3}, {{3199, 10}, {639.5, 1515}, 3},
        {{100, 100}, {-1820, 1420}, std::nullopt}, // the corner that no monitor shows
    };
    for (const auto &each : cases) {
        const QPointF point = layout.pointOf(each.pixel);
        EXPECT_EQ(point, each.point) << each.pixel.x() << ", " << each.pixel.y();
        const auto screen = screenHolding(layout.screens(), point);
        EXPECT_EQ(screen ? std::optional{screen->id} : std::nullopt, each.screen)
            << each.pixel.x() << ", " << each.pixel.y();
    }
}

TEST(ScreenLayout, TheToolkitDividesOnlyWhatLiesInsideAMonitor)
{
    EXPECT_EQ(layout.toolkitPointOf({3199, 1519}), QPoint(3199, 1519));
    EXPECT_EQ(layout.toolkitPointOf({3200, 10}), QPoint(2560, 5));
    EXPECT_EQ(layout.toolkitPointOf({2020, 100}), QPoint(1970, 50));
    EXPECT_EQ(ScreenLayout().toolkitPointOf({3, 4}), QPoint(3, 4));
}

TEST(ScreenLayout, AnAreaOfAScreenIsCutToItsPixels)
{
    EXPECT_EQ(layout.pixelsOf(1, {10, 20, 760, 200}), QRect(1930, 740, 760, 200));
    EXPECT_EQ(layout.pixelsOf(3, {10, 20, 100, 50}), QRect(1940, 40, 200, 100));
    EXPECT_EQ(layout.pixelsOf(2, {1800, 1000, 500, 500}), QRect(1800, 2000, 120, 80));
    EXPECT_TRUE(layout.pixelsOf(2, {1920, 0, 50, 50}).isNull());
    EXPECT_TRUE(layout.pixelsOf(9, {0, 0, 50, 50}).isNull());
    EXPECT_EQ(ScreenLayout().pointOf({3, 4}), QPointF(3, 4));
}

TEST(WorkArea, PanelsTakeOnlyTheMonitorsThatTheyStandOn)
{
    const QSize root(3200, 2080);
    // A panel of 30 pixels at the top of the main monitor is told from the root window's upper edge.
    const QList<Strut> panel = strutsOf({0, 0, 750, 0, 0, 0, 0, 0, 1920, 3199, 0, 0});
    ASSERT_EQ(panel.size(), 1);
    EXPECT_EQ(workAreaOf(mainOne.frame, root, panel), QRect(1920, 750, 1280, 770));
    EXPECT_EQ(workAreaOf(leftOne.frame, root, panel), leftOne.frame);
    EXPECT_EQ(workAreaOf(doubledAbove.frame, root, panel), doubledAbove.frame); // it would leave nothing

    const QList<Strut> dock = strutsOf({64, 0, 0, 0});
    EXPECT_EQ(workAreaOf(leftOne.frame, root, dock), QRect(64, 1000, 1856, 1080));
    EXPECT_EQ(workAreaOf(mainOne.frame, root, dock), mainOne.frame);
    EXPECT_EQ(workAreaOf({0, 0, 100, 100}, {100, 100}, strutsOf({0, 10, 0, 20})), QRect(0, 0, 90, 80));
    EXPECT_TRUE(strutsOf({1, 2, 3}).isEmpty());
    EXPECT_EQ(
        workAreaOf({0, 0, 100, 100}, {100, 100}, strutsOf({0xffffffff, 0, 0, 0})), QRect(0, 0, 100, 100));
}

} // namespace
