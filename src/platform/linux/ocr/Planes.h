#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace nimbrelle {

/// One value for each pixel of a picture, row by row.
using Plane = std::vector<std::uint8_t>;

struct PlaneSize {
    int width;
    int height;

    std::size_t at(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
    std::size_t count() const { return at(0, height); }
};

inline std::uint8_t least(std::uint8_t a, std::uint8_t b)
{
    return a < b ? a : b;
}

inline std::uint8_t most(std::uint8_t a, std::uint8_t b)
{
    return a > b ? a : b;
}

/// Each pixel becomes what `pick` chooses of those up to `reach` off, sidewards and up and down.
template <class Pick> Plane spread(const Plane &from, PlaneSize size, int reach, Pick pick)
{
    Plane across = from;
    for (int y = 0; y < size.height; ++y) {
        const std::uint8_t *row = from.data() + size.at(0, y);
        std::uint8_t *to = across.data() + size.at(0, y);
        for (int step = 1; step <= std::min(reach, size.width - 1); ++step) {
            for (int x = step; x < size.width; ++x)
                to[x] = pick(to[x], row[x - step]);
            for (int x = 0; x < size.width - step; ++x)
                to[x] = pick(to[x], row[x + step]);
        }
    }
    Plane both = across;
    for (int y = 0; y < size.height; ++y)
        for (int other = std::max(y - reach, 0); other <= std::min(y + reach, size.height - 1); ++other) {
            const std::uint8_t *row = across.data() + size.at(0, other);
            std::uint8_t *to = both.data() + size.at(0, y);
            for (int x = 0; x < size.width; ++x)
                to[x] = pick(to[x], row[x]);
        }
    return both;
}

/// `from` and all of `area` that touches it sidewards or up and down, on and on.
Plane grown(Plane from, const Plane &area, PlaneSize size);

/// Pixels that touch each other.
using Piece = std::vector<std::size_t>;

/// The pieces of `area` that hold a pixel of `from`, each once.
std::vector<Piece> piecesAt(const Plane &from, const Plane &area, PlaneSize size);

std::size_t heightOf(const Piece &piece, PlaneSize size);

/// Whether a pixel of `area` has one beside it that is outside.
bool isEdge(std::size_t pixel, const Plane &area, PlaneSize size);

} // namespace nimbrelle
