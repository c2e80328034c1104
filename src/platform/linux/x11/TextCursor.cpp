#include "platform/linux/x11/TextCursor.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace nimbrelle {
namespace {

constexpr std::array textNames{"text", "xterm", "ibeam", "vertical-text"};
constexpr quint32 opaque = 0x80000000;
constexpr int fewestRows = 8;

/// The opaque part of a row.
struct Span {
    int left = 0;
    int right = -1;

    int width() const { return right - left + 1; }
};

Span spanOf(const quint32 *row, int width)
{
    const auto isOpaque = [](quint32 pixel) { return pixel >= opaque; };
    const quint32 *first = std::find_if(row, row + width, isOpaque);
    if (first == row + width)
        return {};
    int right = width - 1;
    while (!isOpaque(row[right]))
        --right;
    return {.left = static_cast<int>(first - row), .right = right};
}

int widest(const std::vector<Span> &rows, std::size_t from, std::size_t to)
{
    int width = 0;
    for (std::size_t row = from; row < to; ++row)
        width = std::max(width, rows[row].width());
    return width;
}

bool isBeam(const CursorPicture &picture)
{
    std::vector<Span> rows;
    int top = 0;
    for (int y = 0; y < picture.size.height(); ++y) {
        const Span span =
            spanOf(picture.pixels.data() + static_cast<std::ptrdiff_t>(y) * picture.size.width(),
                picture.size.width());
        if (span.width() == 0 && rows.empty())
            ++top;
        else
            rows.push_back(span);
    }
    while (!rows.empty() && rows.back().width() == 0)
        rows.pop_back();
    const auto height = static_cast<int>(rows.size());
    const int width = widest(rows, 0, rows.size());
    if (height < fewestRows || height * 2 < width * 3)
        return false;
    const int stem = widest(rows, rows.size() / 4, rows.size() - rows.size() / 4);
    const Span &middle = rows[rows.size() / 2];
    const bool pointsWithItsMiddle = std::abs(2 * picture.hotSpot.x() - middle.left - middle.right) <= width
        && std::abs(2 * (picture.hotSpot.y() - top) - height) <= height / 2;
    return middle.width() > 0 && stem * 2 <= width && rows.front().width() * 2 > width
        && rows.back().width() * 2 > width && pointsWithItsMiddle;
}

} // namespace

bool isTextCursor(const CursorPicture &picture)
{
    if (!picture.name.isEmpty())
        return std::ranges::find(textNames, picture.name) != textNames.end();
    const auto count =
        static_cast<std::size_t>(picture.size.width()) * static_cast<std::size_t>(picture.size.height());
    return picture.pixels.size() == count && isBeam(picture);
}

} // namespace nimbrelle
