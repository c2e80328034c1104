#include "screen/RegionDrag.h"
#include "support/GestureStage.h"

namespace nimbrelle {

TEST(RegionDrag, TakesAFrameThatWasMeant)
{
    const std::pair<QPointF, std::optional<QRectF>> cases[]{{{113, 109}, QRectF(100, 100, 13, 9)},
        {{10, 20}, QRectF(10, 20, 90, 80)}, {{112, 200}, std::nullopt}, {{200, 108}, std::nullopt}};
    for (const auto &[end, expected] : cases) {
        RegionDrag drag;
        drag.press({100, 100});
        drag.move({50, 50});
        EXPECT_EQ(drag.release(end), expected) << end.x() << ' ' << end.y();
    }
    EXPECT_EQ(RegionDrag().release({100, 100}), std::nullopt);
}

class RegionSelectorTest : public testing::Test, protected GestureStage {
protected:
    void begin()
    {
        region.begin([this](QRectF rect) {
            EXPECT_FALSE(overlay.isOpen()); // the capture that follows must not see it
            selected.append(rect);
        });
    }

    QList<QRectF> selected;
};

TEST_F(RegionSelectorTest, GivesTheFrameInGlobalPointsOnThePointersScreen)
{
    screens.screens.append({.id = 2, .frame = {-1920, -200, 1920, 1080}, .workArea = {}, .scale = 2});
    pointer.at = {-10, 100};
    begin();
    EXPECT_EQ(overlay.screenFrame, QRectF(-1920, -200, 1920, 1080));
    overlay.finish(QRectF(100, 50, 300, 40));
    EXPECT_EQ(selected, QList{QRectF(-1820, -150, 300, 40)});
    EXPECT_EQ(front.activated, QList{*front.front});
    pointer.at = {5000, 5000}; // on no screen
    begin();
    EXPECT_EQ(overlay.screenFrame, screens.screens.first().frame);
    screens.screens.clear();
    begin();
    EXPECT_FALSE(overlay.isOpen());
}

TEST_F(RegionSelectorTest, GivingUpLeavesNothingButTheFocusWhereItWas)
{
    begin();
    begin(); // ends the first
    overlay.finish(std::nullopt);
    EXPECT_TRUE(selected.isEmpty());
    EXPECT_FALSE(overlay.isOpen());
    EXPECT_EQ(front.activated, (QList{*front.front, *front.front}));
    front.front->bundleID = front.own; // which needs no giving back
    begin();
    region.cancel();
    EXPECT_EQ(front.activated.size(), 2);
}

} // namespace nimbrelle
