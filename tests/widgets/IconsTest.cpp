#include "widgets/Icons.h"

#include <QImage>

#include <gtest/gtest.h>

namespace nimbrelle {

TEST(Icons, EachDrawsSomethingAndStaysInItsBox)
{
    constexpr int size = 96;
    for (std::size_t i = 0; i < iconDrawings.size(); ++i) {
        const QImage image = iconPixmap(static_cast<Icon>(i), size, 1, Qt::black).toImage();
        int inked = 0;
        bool touchesEdge = false;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x) {
                const bool isInked = image.pixelColor(x, y).alpha() > 8;
                inked += isInked;
                touchesEdge |= isInked && (x == 0 || y == 0 || x == size - 1 || y == size - 1);
            }
        EXPECT_GT(inked, size) << "icon " << i;
        EXPECT_FALSE(touchesEdge) << "icon " << i;
    }
}

TEST(Icons, WhatIsCutOutShowsTheGround)
{
    const QImage stop = iconPixmap(Icon::stop, 24, 2, Qt::black).toImage();
    EXPECT_EQ(stop.size(), QSize(48, 48));
    EXPECT_EQ(stop.pixelColor(24, 24).alpha(), 0);
    EXPECT_EQ(stop.pixelColor(24, 8).alpha(), 255);
    const QImage disc = iconPixmap(Icon::stop, 24, 1, Qt::black, Qt::red).toImage();
    EXPECT_EQ(disc.pixelColor(12, 12), QColor(Qt::red));
}

} // namespace nimbrelle
