#include "widgets/IconArt.h"

#include "frame/Failure.h"
#include "support/Printers.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QtMath>

#include <cmath>
#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// How many connected pieces the pixels at least half covered form.
int pieces(const QImage &image)
{
    QSet<std::pair<int, int>> open;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y).alpha() >= 128)
                open.insert({x, y});
    int count = 0;
    for (; !open.isEmpty(); ++count) {
        QList<std::pair<int, int>> edge{*open.cbegin()};
        while (!edge.isEmpty()) {
            const auto [x, y] = edge.takeLast();
            if (!open.remove({x, y}))
                continue;
            for (const auto &[dx, dy] :
                {std::pair{-1, 0}, {1, 0}, {0, -1}, {0, 1}, {-1, -1}, {1, 1}, {-1, 1}, {1, -1}})
                edge.append({x + dx, y + dy});
        }
    }
    return count;
}

} // namespace

TEST(IconArt, WritesTheWholeSetAndOverwritesIt)
{
    const QTemporaryDir folder;
    const QDir set(folder.filePath(u"new/set"_s));
    renderIconset(set.path());
    ASSERT_EQ(set.entryList(QDir::Files).size(), 11);
    for (const int size : {16, 32, 128, 256, 512}) {
        const QString name = set.filePath(u"icon_%1x%1"_s.arg(size));
        EXPECT_EQ(QImage(name + u".png"_s).size(), QSize(size, size));
        EXPECT_EQ(QImage(name + u"@2x.png"_s).size(), QSize(2 * size, 2 * size));
    }
    const QString preview = set.filePath(u"menubar-preview.png"_s);
    EXPECT_EQ(QImage(preview).size(), QSize(152, 152));

    QFile spoilt(preview);
    ASSERT_TRUE(spoilt.open(QFile::WriteOnly));
    spoilt.write("no picture");
    spoilt.close();
    renderIconset(set.path());
    EXPECT_EQ(QImage(preview).size(), QSize(152, 152));
}

TEST(IconArt, SaysWhatCouldNotBeWritten)
{
    const QTemporaryDir folder;
    const QString blocked = folder.filePath(u"file"_s);
    ASSERT_TRUE(QFile(blocked).open(QFile::WriteOnly));
    try {
        renderIconset(blocked);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const Failure &failure) {
        EXPECT_TRUE(failure.text().startsWith(blocked + u"/icon_16x16.png: "_s)) << failure.what();
    }
}

TEST(IconArt, TheGlyphHasNoGapsAtTheSizesOfBars)
{
    for (const int pixels : {16, 19, 22, 24, 38}) {
        const QImage glyph = menuBarImage(pixels);
        EXPECT_LE(pieces(glyph), 2) << "the ring and the leaf, at " << pixels;
        const QImage faint = glyph.convertToFormat(QImage::Format_Alpha8);
        for (int i = 0; i < pixels; ++i) {
            for (const QPoint edge :
                {QPoint(i, 0), QPoint(i, pixels - 1), QPoint(0, i), QPoint(pixels - 1, i)})
                EXPECT_LT(faint.pixelColor(edge).alpha(), 64) << "cut off at " << pixels;
        }
    }
}

TEST(IconArt, TheRingBeginsRound)
{
    const QPainterPath ring = ensoPath(1);
    const QPointF start(0.52987, 0.74313);
    constexpr double justInside = 0.0582;
    for (int degrees = 0; degrees < 360; degrees += 3) {
        const double angle = qDegreesToRadians(static_cast<double>(degrees));
        EXPECT_TRUE(ring.contains(start + justInside * QPointF(std::cos(angle), std::sin(angle)))) << degrees;
    }
}

} // namespace nimbrelle
