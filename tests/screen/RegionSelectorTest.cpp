#include "screen/RegionSelector.h"

#include "screen/RegionDrag.h"
#include "support/FakeDesktop.h"
#include "support/FakeInput.h"
#include "support/FakeOverlay.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace nimbrelle {

TEST(RegionDrag, TakesAFrameThatWasMeant)
{
    struct Case {
        QPointF from, to;
        std::optional<QRectF> expected;
    };
    const Case cases[]{
        {{10, 10}, {110, 60}, QRectF(10, 10, 100, 50)},
        {{110, 60}, {10, 10}, QRectF(10, 10, 100, 50)}, // dragged backwards
        {{0, 0}, {13, 9}, QRectF(0, 0, 13, 9)}, {{0, 0}, {12, 100}, std::nullopt},
        {{0, 0}, {100, 8}, std::nullopt}, {{5, 5}, {5, 5}, std::nullopt}, // a mere click
    };
    for (const Case &c : cases) {
        RegionDrag drag;
        EXPECT_EQ(drag.rect(), std::nullopt);
        drag.press(c.from);
        drag.move({50, 50});
        EXPECT_EQ(drag.release(c.to), c.expected) << c.to.x() << ' ' << c.to.y();
    }
    EXPECT_EQ(RegionDrag().release({100, 100}), std::nullopt);
}

class RegionSelectorTest : public testing::Test {
protected:
    RegionSelectorTest() { front.front = Application{.bundleID = QStringLiteral("editor"), .window = 7}; }

    void begin()
    {
        selector.begin([this](QRectF rect) {
            EXPECT_FALSE(overlay.isOpen()); // the capture that follows must not see it
            selected.append(rect);
        });
    }

    FakeScreens screens;
    FakePointer pointer;
    FakeFrontApplication front;
    FakeOverlay overlay;
    RegionSelector selector{screens, pointer, front, overlay};
    QList<QRectF> selected;
};

TEST_F(RegionSelectorTest, GivesTheFrameInGlobalPointsOnThePointersScreen)
{
    screens.screens.append(Screen{2, {-1920, -200, 1920, 1080}, {}, 2});
    pointer.at = {-10, 100};
    begin();
    EXPECT_EQ(overlay.screenFrame, QRectF(-1920, -200, 1920, 1080));
    overlay.finish(QRectF(100, 50, 300, 40));
    EXPECT_EQ(selected, QList{QRectF(-1820, -150, 300, 40)});
    EXPECT_EQ(front.activated, QList{*front.front});
    EXPECT_FALSE(overlay.isOpen());
}

TEST_F(RegionSelectorTest, GivingUpLeavesNothingButTheFocusWhereItWas)
{
    begin();
    overlay.finish(std::nullopt);
    EXPECT_TRUE(selected.isEmpty());
    EXPECT_EQ(front.activated, QList{*front.front});
    EXPECT_FALSE(overlay.isOpen());
    selector.cancel();
    EXPECT_EQ(front.activated.size(), 1);
}

TEST_F(RegionSelectorTest, ASecondSelectionEndsTheFirst)
{
    begin();
    begin();
    EXPECT_EQ(overlay.opened, 2);
    EXPECT_TRUE(overlay.isOpen());
    selector.cancel();
    EXPECT_FALSE(overlay.isOpen());
}

TEST_F(RegionSelectorTest, FallsBackToTheMainScreenAndNeedsOne)
{
    pointer.at = {5000, 5000};
    begin();
    EXPECT_EQ(overlay.screenFrame, screens.screens.first().frame);
    selector.cancel();
    screens.screens.clear();
    begin();
    EXPECT_EQ(overlay.opened, 1);
}

TEST_F(RegionSelectorTest, GivesNoFocusBackToItself)
{
    front.front->bundleID = front.own;
    begin();
    selector.cancel();
    EXPECT_TRUE(front.activated.isEmpty());
}

} // namespace nimbrelle
