#include "screen/CaptureArea.h"

#include <gtest/gtest.h>

namespace nimbrelle {

namespace {

const Screen mainScreen{1, {0, 0, 1280, 800}, {0, 0, 1280, 770}, 1};
const Screen leftScreen{2, {-1920, -200, 1920, 1080}, {-1920, -200, 1920, 1080}, 2};

Screen screenOfHeight(double height)
{
    return {3, {0, 0, 1280, height}, {0, 0, 1280, height}, 1};
}

struct AroundCase {
    const char *name;
    Screen screen;
    QPointF point;
    std::optional<QRectF> area;
    QPointF cursor; // where the point is in the picture
};

} // namespace

TEST(CaptureArea, TakesThePartOfTheScreenRoundThePointer)
{
    const AroundCase cases[]{
        {"in the middle", mainScreen, {640, 400}, QRectF(260, 300, 760, 200), {0.5, 0.5}},
        {"near the left edge", mainScreen, {100, 400}, QRectF(0, 300, 480, 200), {100.0 / 480, 0.5}},
        {"in the upper left corner", mainScreen, {0, 800}, QRectF(0, 0, 380, 100), {0, 1}},
        {"in the lower right corner", mainScreen, {1279, 1}, QRectF(899, 699, 381, 101),
            {380.0 / 381, 1.0 / 101}},
        {"on a screen to the left", leftScreen, {-960, 340}, QRectF(580, 440, 760, 200), {0.5, 0.5}},
        {"on a screen too low", screenOfHeight(20), {640, 10}, std::nullopt, {}},
        {"on one just high enough", screenOfHeight(21), {640, 10}, QRectF(260, 0, 760, 21), {0.5, 10.0 / 21}},
    };
    for (const AroundCase &c : cases) {
        SCOPED_TRACE(c.name);
        const auto piece = CaptureArea::around(c.point, c.screen);
        ASSERT_EQ(piece.has_value(), c.area.has_value());
        if (!piece)
            continue;
        EXPECT_EQ(piece->rect, *c.area);
        EXPECT_NEAR(piece->normalized(c.point).x(), c.cursor.x(), 1e-9);
        EXPECT_NEAR(piece->normalized(c.point).y(), c.cursor.y(), 1e-9);
    }
}

TEST(CaptureArea, PutsABoxBackToItsPlaceOnTheScreen)
{
    const CaptureArea whole = CaptureArea::around({640, 400}, mainScreen).value();
    EXPECT_EQ(whole.toGlobal({0, 0, 1, 1}), QRectF(260, 300, 760, 200));
    EXPECT_EQ(whole.toGlobal({0.5, 0.25, 0.1, 0.1}), QRectF(640, 350, 76, 20));
    // Clipped, on a screen left of and below the main one.
    const CaptureArea corner = CaptureArea::around({-1900, -190}, leftScreen).value();
    EXPECT_EQ(corner.toGlobal({0, 0, 0.5, 0.5}), QRectF(-1920, -200, 200, 55));
}

TEST(CaptureArea, TakesTheFramedPartIfItIsLargeEnough)
{
    EXPECT_EQ(CaptureArea::of({100, 200, 300, 150}, mainScreen)->rect, QRectF(100, 450, 300, 150));
    EXPECT_EQ(CaptureArea::of({1200, 700, 300, 300}, mainScreen)->rect, QRectF(1200, 0, 80, 100));
    EXPECT_EQ(CaptureArea::of({-1900, -200, 9, 9}, leftScreen)->rect, QRectF(20, 1071, 9, 9));
    EXPECT_FALSE(CaptureArea::of({100, 200, 8, 100}, mainScreen));
    EXPECT_FALSE(CaptureArea::of({100, 200, 100, 8}, mainScreen));
    EXPECT_FALSE(CaptureArea::of({2000, 200, 100, 100}, mainScreen));
}

} // namespace nimbrelle
