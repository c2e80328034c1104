#include "platform/linux/ocr/Grounds.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <map>

namespace nimbrelle {
namespace {

constexpr int leastWidth = 10; // in points
constexpr int leastHeight = 9;
constexpr int mostHeight = 90; // larger ones are turned over as a whole
constexpr double leastFill = 0.35; // of the block, for letters cover less than the rest
constexpr double leastRowFill = 0.12; // and of each of its rows
constexpr double longRun = 6; // points of one colour in a row, which no letter has
constexpr int faintInk = 40; // less difference from the ground is no letter
constexpr double inkShare = 0.02; // the strongest pixels of a block are its ink

quint32 pixelAt(const Picture &picture, int x, int y)
{
    quint32 pixel = 0;
    std::memcpy(&pixel, picture.pixels.constData() + 4 * (qsizetype{y} * picture.width + x), sizeof pixel);
    return pixel & 0xffffffU;
}

/// A run of one colour in a row of pixels.
struct Run {
    int left;
    int right; ///< the last one in it
    quint32 colour;
};

std::vector<Run> longRuns(const Picture &picture, int y)
{
    const int least = static_cast<int>(longRun * picture.scale);
    std::vector<Run> runs;
    for (int x = 0; x < picture.width;) {
        const quint32 colour = pixelAt(picture, x, y);
        int end = x + 1;
        while (end < picture.width && pixelAt(picture, end, y) == colour)
            ++end;
        if (end - x >= least)
            runs.push_back({.left = x, .right = end - 1, .colour = colour});
        x = end;
    }
    return runs;
}

int countIn(const Picture &picture, int y, int left, int right, quint32 colour)
{
    int count = 0;
    for (int x = left; x <= right; ++x)
        count += pixelAt(picture, x, y) == colour ? 1 : 0;
    return count;
}

struct Block {
    Ground ground;
    qsizetype pixels = 0; ///< of the ground's own colour
};

/// Down from its topmost row, on which no letter stands, as long as there is enough of its colour.
Block grownFrom(const Picture &picture, int top, const Run &run)
{
    int left = run.left;
    int right = run.right;
    int y = top;
    qsizetype pixels = 0;
    for (; y < picture.height; ++y) {
        while (left > 0 && pixelAt(picture, left - 1, y) == run.colour)
            --left;
        while (right + 1 < picture.width && pixelAt(picture, right + 1, y) == run.colour)
            ++right;
        const int count = countIn(picture, y, left, right, run.colour);
        if (count < leastRowFill * (right - left + 1))
            break;
        pixels += count;
    }
    return {
        .ground = {.box = {QPoint(left, top), QPoint(right, y - 1)}, .colour = run.colour}, .pixels = pixels};
}

bool liesUnderText(const Block &block, double scale)
{
    const QRect &box = block.ground.box;
    return box.width() >= leastWidth * scale && box.height() >= leastHeight * scale
        && box.height() <= mostHeight * scale
        && static_cast<double>(block.pixels) >= leastFill * box.width() * box.height();
}

quint32 commonest(const std::vector<std::vector<Run>> &rows)
{
    std::map<quint32, qsizetype> counts;
    for (const std::vector<Run> &row : rows)
        for (const Run &run : row)
            counts[run.colour] += run.right - run.left + 1;
    const auto most = std::max_element(
        counts.begin(), counts.end(), [](const auto &a, const auto &b) { return a.second < b.second; });
    return most == counts.end() ? 0 : most->first;
}

int difference(quint32 a, quint32 b)
{
    int most = 0;
    for (int shift = 0; shift < 24; shift += 8)
        most = std::max(
            most, std::abs(static_cast<int>(a >> shift & 0xffU) - static_cast<int>(b >> shift & 0xffU)));
    return most;
}

} // namespace

std::vector<Ground> groundsIn(const Picture &picture)
{
    std::vector<std::vector<Run>> rows;
    for (int y = 0; y < picture.height; ++y)
        rows.push_back(longRuns(picture, y));
    const quint32 page = commonest(rows);
    std::vector<Block> blocks;
    for (int y = 0; y < picture.height; ++y)
        for (const Run &run : rows[static_cast<std::size_t>(y)]) {
            const bool isSeen = std::any_of(blocks.begin(), blocks.end(), [&](const Block &block) {
                return block.ground.colour == run.colour && block.ground.box.contains(run.left, y);
            });
            if (run.colour != page && !isSeen)
                blocks.push_back(grownFrom(picture, y, run));
        }
    std::vector<Ground> grounds;
    for (const Block &block : blocks)
        if (liesUnderText(block, picture.scale))
            grounds.push_back(block.ground);
    return grounds;
}

void levelGround(const Picture &picture, const Ground &ground, GreyPicture &grey)
{
    std::array<qsizetype, 256> counts{};
    const QRect &box = ground.box;
    for (int y = box.top(); y <= box.bottom(); ++y)
        for (int x = box.left(); x <= box.right(); ++x)
            ++counts[static_cast<std::size_t>(difference(pixelAt(picture, x, y), ground.colour))];
    qsizetype stronger = static_cast<qsizetype>(inkShare * box.width() * box.height());
    int ink = 255;
    while (ink > faintInk && (stronger -= counts[static_cast<std::size_t>(ink)]) > 0)
        --ink;
    for (int y = box.top(); y <= box.bottom(); ++y)
        for (int x = box.left(); x <= box.right(); ++x) {
            const int strength = difference(pixelAt(picture, x, y), ground.colour) * 255 / ink;
            grey.pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(grey.width)
                + static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(255 - std::min(strength, 255));
        }
}

} // namespace nimbrelle
