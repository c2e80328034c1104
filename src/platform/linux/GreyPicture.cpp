#include "platform/linux/GreyPicture.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace nimbrelle {
namespace {

constexpr int darkMean = 110;
/// Larger pictures, such as a whole framed page, are read as they are: else they would take seconds.
constexpr qint64 largestEnlarged = 500'000;
constexpr double fineScale = 1.75;
/// Subtitle strokes are as bright as this or more, and what is darker than the other is certainly none. In
/// between the stroke's soft edge is kept, which the engine needs.
constexpr int strokeBrightness = 215;
constexpr int groundBrightness = 165;

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

bool isDark(const GreyPicture &grey)
{
    const auto sum = std::accumulate(grey.pixels.begin(), grey.pixels.end(), qint64{0});
    return sum < darkMean * static_cast<qint64>(grey.pixels.size());
}

using Curve = std::array<std::uint8_t, 256>;

void replaceBy(GreyPicture &grey, const Curve &curve)
{
    for (std::uint8_t &pixel : grey.pixels)
        pixel = curve[pixel];
}

Curve inverting()
{
    Curve curve;
    for (std::size_t i = 0; i < curve.size(); ++i)
        curve[i] = static_cast<std::uint8_t>(255 - i);
    return curve;
}

Curve keepingStrokes()
{
    Curve curve;
    for (int i = 0; i < 256; ++i) {
        const int range = strokeBrightness - groundBrightness;
        const int darkness = std::clamp((i - groundBrightness) * 255 / range, 0, 255);
        curve[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(255 - darkness);
    }
    return curve;
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

} // namespace

int enlargement(const Picture &picture)
{
    const bool isLarge = qint64{picture.width} * picture.height > largestEnlarged;
    return isLarge || picture.scale >= fineScale ? 1 : 2;
}

GreyPicture prepared(const Picture &picture, RecognitionStyle style)
{
    GreyPicture grey = greyOf(picture);
    if (style == RecognitionStyle::plain && isDark(grey))
        replaceBy(grey, inverting());
    if (enlargement(picture) == 2)
        grey = doubled(grey);
    if (style == RecognitionStyle::subtitles)
        replaceBy(grey, keepingStrokes());
    return grey;
}

} // namespace nimbrelle
