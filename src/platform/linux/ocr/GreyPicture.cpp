#include "platform/linux/ocr/GreyPicture.h"

#include "platform/linux/ocr/Grounds.h"
#include "platform/linux/ocr/SubtitleStrokes.h"
#include "platform/linux/ocr/Underlines.h"

#include <algorithm>
#include <array>

namespace nimbrelle {
namespace {

constexpr int darkGround = 112;
/// Larger pictures, such as a whole framed page, are read as they are: else they would take seconds.
constexpr qint64 largestEnlarged = 500'000;
constexpr double fineScale = 1.75;

GreyPicture greyOf(const Picture &picture)
{
    GreyPicture grey{picture.width, picture.height, {}};
    const auto count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    grey.pixels.resize(count);
    const auto *from = reinterpret_cast<const std::uint8_t *>(picture.pixels.constData());
    for (std::size_t i = 0; i < count; ++i, from += 4) // the usual weights of blue, green and red, in 256ths
        grey.pixels[i] = static_cast<std::uint8_t>((29 * from[0] + 150 * from[1] + 77 * from[2]) >> 8);
    return grey;
}

/// The picture in square blocks, for light and dark parts side by side.
struct Blocks {
    static constexpr int size = 24;

    int columns = 0;
    int rows = 0;
    std::vector<bool> isDark;

    bool at(int column, int row) const
    {
        return isDark[static_cast<std::size_t>(
            std::clamp(row, 0, rows - 1) * columns + std::clamp(column, 0, columns - 1))];
    }
};

/// The commonest brightness of a block is that of its ground, for letters cover less of it.
bool hasDarkGround(const GreyPicture &grey, int column, int row)
{
    std::array<int, 16> counts{};
    const int right = std::min((column + 1) * Blocks::size, grey.width);
    const int bottom = std::min((row + 1) * Blocks::size, grey.height);
    for (int y = row * Blocks::size; y < bottom; ++y)
        for (int x = column * Blocks::size; x < right; ++x)
            ++counts[grey.pixels[static_cast<std::size_t>(y * grey.width + x)] / counts.size()];
    const auto commonest = std::ranges::max_element(counts) - counts.begin();
    return commonest * static_cast<int>(counts.size()) < darkGround;
}

Blocks blocksOf(const GreyPicture &grey)
{
    Blocks blocks;
    blocks.columns = (grey.width + Blocks::size - 1) / Blocks::size;
    blocks.rows = (grey.height + Blocks::size - 1) / Blocks::size;
    for (int row = 0; row < blocks.rows; ++row)
        for (int column = 0; column < blocks.columns; ++column)
            blocks.isDark.push_back(hasDarkGround(grey, column, row));
    return blocks;
}

/// Whether most of the block's surroundings are dark, so that a bold letter doesn't turn its own ground over.
bool isInTheDark(const Blocks &blocks, int column, int row)
{
    int dark = 0;
    for (int y = row - 1; y <= row + 1; ++y)
        for (int x = column - 1; x <= column + 1; ++x)
            dark += blocks.at(x, y) ? 1 : 0;
    return dark >= 5;
}

void invertDarkParts(GreyPicture &grey)
{
    const Blocks blocks = blocksOf(grey);
    const auto dark = std::ranges::count(blocks.isDark, true);
    const auto all = static_cast<std::ptrdiff_t>(blocks.isDark.size());
    const bool isMixed = dark * 8 > all && dark * 8 < all * 7;
    if (!isMixed && dark * 2 <= all)
        return;
    for (int row = 0; row < blocks.rows; ++row)
        for (int column = 0; column < blocks.columns; ++column) {
            if (isMixed && !isInTheDark(blocks, column, row))
                continue;
            const int right = std::min((column + 1) * Blocks::size, grey.width);
            const int bottom = std::min((row + 1) * Blocks::size, grey.height);
            for (int y = row * Blocks::size; y < bottom; ++y)
                for (int x = column * Blocks::size; x < right; ++x) {
                    auto &pixel = grey.pixels[static_cast<std::size_t>(y * grey.width + x)];
                    pixel = static_cast<std::uint8_t>(255 - pixel);
                }
        }
}

/// Twice as wide, each new pixel a mixture of 3 to 1 of its two neighbours.
std::vector<std::uint8_t> widened(const std::uint8_t *row, int width)
{
    std::vector<std::uint8_t> wide(static_cast<std::size_t>(width) * 2);
    for (int x = 0; x < width; ++x) {
        const int here = row[x];
        const int left = row[std::max(x - 1, 0)];
        const int right = row[std::min(x + 1, width - 1)];
        wide[static_cast<std::size_t>(x) * 2] = static_cast<std::uint8_t>((3 * here + left + 2) / 4);
        wide[static_cast<std::size_t>(x) * 2 + 1] = static_cast<std::uint8_t>((3 * here + right + 2) / 4);
    }
    return wide;
}

GreyPicture doubled(const GreyPicture &grey)
{
    std::vector<std::vector<std::uint8_t>> rows;
    const auto width = static_cast<std::size_t>(grey.width);
    for (int y = 0; y < grey.height; ++y)
        rows.push_back(widened(grey.pixels.data() + static_cast<std::size_t>(y) * width, grey.width));
    GreyPicture large{grey.width * 2, grey.height * 2, {}};
    large.pixels.reserve(grey.pixels.size() * 4);
    const auto mix = [&](int near, int far) {
        const auto &a = rows[static_cast<std::size_t>(near)];
        const auto &b = rows[static_cast<std::size_t>(std::clamp(far, 0, grey.height - 1))];
        for (std::size_t x = 0; x < a.size(); ++x)
            large.pixels.push_back(static_cast<std::uint8_t>((3 * a[x] + b[x] + 2) / 4));
    };
    for (int y = 0; y < grey.height; ++y) {
        mix(y, y - 1);
        mix(y, y + 1);
    }
    return large;
}

GreyPicture plainText(const Picture &picture)
{
    GreyPicture grey = greyOf(picture);
    invertDarkParts(grey);
    for (const Ground &ground : groundsIn(picture))
        levelGround(picture, ground, grey);
    removeUnderlines(grey, picture.scale);
    return grey;
}

} // namespace

int enlargement(const Picture &picture)
{
    const bool isLarge = qint64{picture.width} * picture.height > largestEnlarged;
    return isLarge || picture.scale >= fineScale ? 1 : 2;
}

GreyPicture prepared(const Picture &picture, RecognitionStyle style)
{
    GreyPicture grey = style == RecognitionStyle::subtitles ? subtitleStrokes(picture) : plainText(picture);
    return enlargement(picture) == 2 ? doubled(grey) : grey;
}

} // namespace nimbrelle
