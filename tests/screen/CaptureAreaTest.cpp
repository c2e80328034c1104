#include "screen/CaptureArea.h"

#include <gtest/gtest.h>

namespace nimbrelle {

namespace {

const Screen mainScreen{.id = 1, .frame = {0, 0, 1280, 800}, .workArea = {}, .scale = 1};
const Screen leftScreen{.id = 2, .frame = {-1920, -200, 1920, 1080}, .workArea = {}, .scale = 2};

QRectF rectAround(QPointF point, const Screen &screen)
{
    return CaptureArea::around(point, screen).value_or(CaptureArea()).rect;
}

QRectF rectOf(const QRectF &frame, const Screen &screen)
{
    return CaptureArea::of(frame, screen).value_or(CaptureArea()).rect;
}

} // namespace

TEST(CaptureArea, IsThePartOfTheScreenRoundThePointer)
{
    EXPECT_EQ(rectAround({640, 400}, mainScreen), QRectF(260, 300, 760, 200));
    EXPECT_EQ(rectAround({1279, 1}, mainScreen), QRectF(899, 699, 381, 101));
    EXPECT_EQ(rectAround({-960, 340}, leftScreen), QRectF(580, 440, 760, 200));
    Screen low = mainScreen;
    low.frame.setHeight(21);
    EXPECT_EQ(rectAround({640, 10}, low), QRectF(260, 0, 760, 21));
    low.frame.setHeight(20);
    EXPECT_EQ(rectAround({640, 10}, low), QRectF());
}

TEST(CaptureArea, IsTheFramedPartIfItIsLargeEnough)
{
    EXPECT_EQ(rectOf({1200, 700, 300, 300}, mainScreen), QRectF(1200, 0, 80, 100));
    EXPECT_EQ(rectOf({-1900, -200, 9, 9}, leftScreen), QRectF(20, 1071, 9, 9));
    EXPECT_EQ(rectOf({100, 200, 8, 100}, mainScreen), QRectF());
    EXPECT_EQ(rectOf({100, 200, 100, 8}, mainScreen), QRectF());
}

TEST(CaptureArea, MapsItsPictureToTheScreenAlsoWhereItIsClipped)
{
    const CaptureArea corner = CaptureArea::around({-1900, -190}, leftScreen).value(); // 400 by 110 points
    EXPECT_EQ(corner.normalized({-1820, -189}), QPointF(0.25, 0.1));
    EXPECT_EQ(corner.toGlobal({0.25, 0.5, 0.5, 0.1}), QRectF(-1820, -145, 200, 11));
}

} // namespace nimbrelle
