#include "card/CardPlacement.h"

#include <gtest/gtest.h>

namespace nimbrelle {

TEST(CardPlacement, PlacesTheCardToThePixel)
{
    const QRectF visible(0, 0, 1280, 770);
    const QSizeF size(340, 200);
    struct Case {
        const char *name;
        QPointF anchor;
        QSizeF size;
        QRectF visible;
        QPointF corner;
    };
    const Case cases[]{
        {"below the anchor", {640, 400}, size, visible, {616, 182}},
        {"just fits below", {640, 226}, size, visible, {616, 8}},
        {"flips above", {640, 225}, size, visible, {616, 243}},
        {"at the left edge", {20, 400}, size, visible, {8, 182}},
        {"at the right edge", {1270, 400}, size, visible, {932, 182}},
        {"above the work area", {640, 1200}, size, visible, {616, 562}},
        {"flipped and too high", {640, 200}, {340, 600}, visible, {616, 162}},
        {"below the screen", {640, -500}, size, visible, {616, 8}},
        {"too wide: the far edge wins", {640, 400}, {1300, 200}, visible, {-28, 182}},
        {"too high: the far edge wins", {640, 400}, {340, 900}, visible, {616, -138}},
        {"on a screen left of and below the main one", {-1900, -150}, size, {-1920, -200, 1920, 1080},
            {-1912, -132}},
        {"on no screen at all", {640, 400}, size, {}, {-348, -208}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(placedCard(c.anchor, c.size, c.visible), QRectF(c.corner, c.size)) << c.name;
}

} // namespace nimbrelle
