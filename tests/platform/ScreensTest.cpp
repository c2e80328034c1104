#include "platform/Screens.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

const Screen middle{1, {0, 0, 1280, 800}, {0, 0, 1280, 770}, 1};
const Screen left{2, {-1920, -280, 1920, 1080}, {-1920, -280, 1920, 1080}, 1};
const Screen above{3, {0, 800, 1280, 720}, {0, 800, 1280, 720}, 2};

TEST(Screens, EachPointBelongsToAtMostOneScreen)
{
    const struct {
        QPointF point;
        std::optional<quint32> screen;
    } cases[] = {
        {{640, 400}, 1},
        {{0, 400}, 1},
        {{-0.5, 400}, 2},
        {{1280, 400}, std::nullopt},
        {{640, 800}, 1}, // the upper edge is the topmost row of pixels
        {{640, 800.5}, 3},
        {{640, 0}, std::nullopt},
        {{-1920, 800}, 2},
        {{-1, -280}, std::nullopt},
        {{-5000, 0}, std::nullopt},
    };
    for (const auto &each : cases) {
        const auto found = screenHolding({middle, left, above}, each.point);
        EXPECT_EQ(found ? std::optional{found->id} : std::nullopt, each.screen)
            << each.point.x() << ", " << each.point.y();
    }
}

TEST(Screens, AnAreaIsTurnedOverAndBack)
{
    EXPECT_EQ(globalFromTopLeft(left, {10, 20, 100, 50}), QRectF(-1910, 730, 100, 50));
    EXPECT_EQ(topLeftFromGlobal(above, {0, 800, 100, 20}), QRectF(0, 700, 100, 20));
    for (const Screen &screen : {middle, left, above})
        EXPECT_EQ(topLeftFromGlobal(screen, globalFromTopLeft(screen, {3, 4, 50, 60})), QRectF(3, 4, 50, 60));
}

} // namespace
