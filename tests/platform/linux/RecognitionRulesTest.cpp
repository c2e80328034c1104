#include "platform/linux/ocr/EngineText.h"
#include "platform/linux/ocr/GreyPicture.h"
#include "platform/linux/ocr/Grounds.h"
#include "platform/linux/ocr/SubtitleStrokes.h"
#include "platform/linux/ocr/Underlines.h"
#include "platform/linux/x11/XScreenCapture.h"
#include "support/Printers.h"

#include <QImage>

#include <algorithm>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

/// Words of 10 pixels a letter: capitals and tall letters 20 high, small ones 14, bars as told, on one line.
EngineLine line(std::initializer_list<const char *> words, int barHeight, int gap = 10)
{
    EngineLine made;
    int x = 0;
    for (const char *text : words) {
        EngineWord word;
        word.text = QString::fromUtf8(text);
        for (qsizetype i = 0; i < word.text.size(); ++i, x += 10) {
            const QChar c = word.text.at(i);
            const int height = c == u'|'                             ? barHeight
                : c.isUpper() || QStringView(u"bdfhklt").contains(c) ? 20
                                                                     : 14;
            word.unitBoxes.emplace_back(x, 20 - height, 10, height);
        }
        for (const QRect &box : word.unitBoxes)
            word.box |= box;
        x += gap;
        made.push_back(word);
    }
    return made;
}

QString mended(EngineLine words)
{
    mendPronouns(words);
    return recognizedLine(words, {1000, 100}).text;
}

TEST(EngineText, ABarIsThePronounOnlyInASentence)
{
    EXPECT_EQ(mended(line({"|", "was", "reluctant"}, 20)), u"I was reluctant"_s);
    EXPECT_EQ(mended(line({"but", "|", "think"}, 20)), u"but I think"_s);
    EXPECT_EQ(mended(line({"so", "am", "|"}, 20)), u"so am I"_s);
    EXPECT_EQ(mended(line({"If", "|", "knew,", "|", "hid"}, 20)), u"If I knew, I hid"_s);
    EXPECT_EQ(mended(line({"|'m", "sure", "|’ll", "go"}, 20)), u"I'm sure I’ll go"_s);
    // Separators are taller, stand among capitals or at wide gaps, or all alone.
    EXPECT_EQ(mended(line({"home", "|", "about"}, 26)), u"home | about"_s);
    EXPECT_EQ(mended(line({"Home", "|", "About"}, 20)), u"Home | About"_s);
    EXPECT_EQ(mended(line({"but", "|", "think"}, 20, 40)), u"but | think"_s);
    EXPECT_EQ(mended(line({"|"}, 20)), u"|"_s);
    EXPECT_EQ(mended(line({"a||b", "is", "|x"}, 20)), u"a||b is |x"_s);
}

TEST(EngineText, BoxesAreNormalizedFromTheLowerLeft)
{
    EngineLine words = line({"of", "Oz"}, 20);
    words[0].confidence = 80;
    words[1].confidence = 90;
    const RecognizedLine made = recognizedLine(words, {100, 40});
    EXPECT_EQ(made.text, u"of Oz"_s);
    ASSERT_EQ(made.unitBoxes.size(), made.text.size());
    EXPECT_EQ(made.unitBoxes.at(0), QRectF(0, 0.5, 0.1, 0.35));
    EXPECT_TRUE(made.unitBoxes.at(2).isNull());
    EXPECT_EQ(made.boxOf(3, 2), QRectF(0.3, 0.5, 0.2, 0.5));
    EXPECT_EQ(made.box, QRectF(0, 0.5, 0.5, 0.5));
    EXPECT_TRUE(made.boxOf(2, 1).isNull());
    EXPECT_EQ(made.unitConfidences, (QList<double>{80, 80, 100, 90, 90}));
    EXPECT_EQ(made.confidenceOf(0, 5), 80);
    EXPECT_EQ(made.confidenceOf(3, 9), 90);
    EXPECT_EQ(made.boxOf(3, 100), made.boxOf(3, 2));
}

Picture filled(int width, int height, std::uint8_t grey, double scale = 1)
{
    Picture picture{width, height, scale, QByteArray(qsizetype{4} * width * height, static_cast<char>(grey))};
    return picture;
}

TEST(GreyPicture, DarkPicturesAreInvertedAndSmallOnesEnlarged)
{
    const GreyPicture light = prepared(filled(30, 20, 200), RecognitionStyle::plain);
    EXPECT_EQ(light.width, 60);
    EXPECT_EQ(light.height, 40);
    EXPECT_EQ(light.pixels.size(), 2400U);
    EXPECT_EQ(light.pixels.front(), 200);
    EXPECT_EQ(prepared(filled(30, 20, 40), RecognitionStyle::plain).pixels.front(), 215);
    EXPECT_EQ(prepared(filled(30, 20, 40, 2), RecognitionStyle::plain).width, 30);
    EXPECT_EQ(enlargement(filled(760, 200, 255)), 2);
    EXPECT_EQ(enlargement(filled(1280, 800, 255)), 1);
}

TEST(GreyPicture, ADarkPartOfALightPictureIsInvertedAlone)
{
    Picture picture = filled(480, 240, 250, 2);
    for (int y = 0; y < 240; ++y) // the left half is dark, with a bold light stroke in it
        for (int x = 0; x < 240; ++x)
            std::fill_n(picture.pixels.data() + 4 * (y * 480 + x), 4,
                static_cast<char>(x > 96 && x < 120 ? 240 : 30));
    const GreyPicture grey = prepared(picture, RecognitionStyle::plain);
    const auto row = grey.pixels.begin() + qsizetype{120} * 480;
    EXPECT_EQ(row[20], 225);
    EXPECT_EQ(row[108], 15);
    EXPECT_EQ(row[200], 225);
    EXPECT_EQ(row[300], 250);
}

/// Three strokes, 4 pixels wide, 12 apart, with a dark edge to all sides or, as a shadow, to the right.
Picture subtitles(QRgb scenery, QRgb ink, bool isOutlined)
{
    QImage image(120, 60, QImage::Format_RGB32);
    image.fill(scenery);
    for (int i = 0; i < 3; ++i) {
        const QRect stroke(40 + 12 * i, 20, 4, 18);
        const QRect edge = isOutlined ? stroke.adjusted(-2, -2, 2, 2) : stroke.translated(2, 1);
        for (const auto &[area, colour] : {std::pair(edge, qRgb(0, 0, 0)), std::pair(stroke, ink)})
            for (int y = area.top(); y <= area.bottom(); ++y)
                for (int x = area.left(); x <= area.right(); ++x)
                    image.setPixel(x, y, colour);
    }
    return {.width = 120,
        .height = 60,
        .scale = 1,
        .pixels = QByteArray(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes())};
}

TEST(SubtitleStrokes, AreTakenFromAnySceneryByColourAndWhatSurroundsThem)
{
    const QRgb white = qRgb(255, 255, 255);
    const QRgb yellow = qRgb(255, 240, 120);
    for (const Picture &picture :
        {subtitles(qRgb(40, 90, 60), white, true), subtitles(qRgb(230, 230, 230), white, true),
            subtitles(qRgb(235, 225, 140), yellow, true), subtitles(qRgb(60, 60, 120), white, false)}) {
        const GreyPicture grey = subtitleStrokes(picture);
        const auto at = [&](int x, int y) { return grey.pixels[static_cast<std::size_t>(y * 120 + x)]; };
        for (const int left : {40, 52, 64})
            EXPECT_EQ(at(left + 1, 28), 0);
        for (const QPoint &beside : {QPoint(46, 28), QPoint(58, 28), QPoint(20, 28), QPoint(52, 50)})
            EXPECT_EQ(at(beside.x(), beside.y()), 255);
    }
    // A page has none.
    EXPECT_EQ(std::ranges::count(subtitleStrokes(subtitles(white, white, true)).pixels, 255), 120 * 60);
}

/// Six outlined strokes on bright scenery, one of them with a gap in its outline, and below them what two
/// outlines leave of a scenery of the same colour, with a gap as well.
TEST(SubtitleStrokes, ALetterWhoseOutlineHasAGapIsKeptAndWhatIsLeftBetweenOutlinesIsNot)
{
    const QColor scenery(200, 200, 235);
    QImage image(120, 60, QImage::Format_RGB32);
    image.fill(scenery);
    const auto fill = [&image](const QRect &area, const QColor &colour) {
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                image.setPixelColor(x, y, colour);
    };
    const auto outlined = [&fill](const QRect &area) {
        fill(area.adjusted(-2, -2, 2, 2), Qt::black);
        fill(area, Qt::white);
    };
    for (int i = 0; i < 6; ++i)
        outlined(QRect(20 + 12 * i, 20, 4, 18));
    outlined(QRect(57, 46, 4, 4));
    for (const QRect &gap : {QRect(58, 16, 1, 4), QRect(58, 50, 1, 2)})
        fill(gap, Qt::white);
    const GreyPicture grey = subtitleStrokes({.width = 120,
        .height = 60,
        .scale = 1,
        .pixels = QByteArray(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes())});
    const auto at = [&](int x, int y) { return grey.pixels[static_cast<std::size_t>(y * 120 + x)]; };
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(at(21 + 12 * i, 28), 0) << i;
    EXPECT_EQ(at(58, 47), 255);
}

/// A light page with a block of `size` in which every third column is a stroke, as letters would be, but for
/// two rows above and below them.
Picture markedPage(QSize size, QRgb ground, QRgb ink)
{
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(QColor(250, 250, 250));
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) {
            const bool isStroke = x % 3 == 1 && y >= 2 && y < size.height() - 2;
            image.setPixel(40 + x, 30 + y, isStroke ? ink : ground);
        }
    return {.width = 300,
        .height = 200,
        .scale = 2,
        .pixels = QByteArray(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes())};
}

TEST(Grounds, MarkedTextBecomesBlackOnWhiteWhateverItsColours)
{
    for (const auto &[ground, ink] :
        {std::pair(qRgb(53, 132, 228), qRgb(255, 255, 255)), std::pair(qRgb(174, 207, 252), qRgb(34, 34, 34)),
            std::pair(qRgb(0, 120, 215), qRgb(34, 34, 34))}) {
        const Picture picture = markedPage({90, 24}, ground, ink);
        const std::vector<Ground> grounds = groundsIn(picture);
        ASSERT_EQ(grounds.size(), 1U);
        EXPECT_EQ(grounds.front().box, QRect(40, 30, 90, 24));
        const GreyPicture grey = prepared(picture, RecognitionStyle::plain);
        const auto row = grey.pixels.begin() + qsizetype{40} * 300;
        EXPECT_EQ(row[40], 255);
        EXPECT_EQ(row[41], 0);
        EXPECT_EQ(row[20], 250);
    }
}

TEST(Grounds, WhatHoldsNoLineOfTextIsLeftAlone)
{
    const QRgb blue = qRgb(53, 132, 228);
    EXPECT_TRUE(groundsIn(markedPage({90, 12}, blue, qRgb(255, 255, 255))).empty()); // a bar
    EXPECT_TRUE(groundsIn(markedPage({12, 24}, blue, qRgb(255, 255, 255))).empty());
    EXPECT_TRUE(groundsIn(markedPage({90, 0}, blue, blue)).empty());
    // Nothing in a plain block becomes letters.
    const GreyPicture grey = prepared(markedPage({90, 24}, blue, blue + 3), RecognitionStyle::plain);
    EXPECT_GT(grey.pixels[40 * 300 + 41], 230);
}

/// Ten strokes like letters, one of which reaches down to row 18, with a line of `thickness` below them.
GreyPicture underlined(int length, int thickness, bool hasLetters = true)
{
    GreyPicture grey{.width = 60, .height = 24, .pixels = std::vector<std::uint8_t>(60 * 24, 250)};
    const auto paint = [&](int left, int top, int width, int height) {
        for (int y = top; y < top + height; ++y)
            std::fill_n(grey.pixels.begin() + y * 60 + left, width, 30);
    };
    for (int i = 0; i < 10 && hasLetters; ++i)
        paint(4 + 5 * i, 3, 2, i == 4 ? 16 : 9);
    paint(4, 14, length, thickness);
    return grey;
}

TEST(Underlines, AreTakenAwayFromBelowWordsOnly)
{
    const auto isGone = [](GreyPicture grey) {
        removeUnderlines(grey, 1);
        return grey.pixels == underlined(0, 0).pixels;
    };
    EXPECT_TRUE(isGone(underlined(50, 1)));
    EXPECT_TRUE(isGone(underlined(50, 2)));
    EXPECT_FALSE(isGone(underlined(20, 1))); // it may be a stroke of a letter
    EXPECT_FALSE(isGone(underlined(50, 4)));
    GreyPicture dash = underlined(50, 1, false);
    const auto before = dash.pixels;
    removeUnderlines(dash, 1);
    EXPECT_EQ(dash.pixels, before);
}

TEST(ScreenCapture, WindowsAreLaidOverEachOther)
{
    QByteArray picture(4 * 4 * 2, '\x40'); // 4 by 2 pixels
    layOver(picture, 4, QByteArray(4 * 2, '\x80'), QRect(1, 1, 2, 1), false);
    EXPECT_EQ(picture.count('\x80'), 8);
    EXPECT_EQ(picture.at(4 * 5), '\x80');
    EXPECT_EQ(picture.at(4 * 4), '\x40');

    const QByteArray halfWhite = QByteArray(3, '\x80') + QByteArray(1, '\x80'); // multiplied already
    layOver(picture, 4, halfWhite, QRect(0, 0, 1, 1), true);
    EXPECT_NEAR(static_cast<unsigned char>(picture.at(0)), 0x80 + 0x40 / 2, 1);
    const QByteArray clear(4, '\0');
    layOver(picture, 4, clear, QRect(3, 0, 1, 1), true);
    EXPECT_EQ(picture.at(4 * 3), '\x40');

    blank(picture, 4, QRect(2, 0, 2, 2));
    EXPECT_EQ(picture.count('\xff'), 4 * 4);
    EXPECT_EQ(picture.at(4 * 7), '\xff');
}

} // namespace
