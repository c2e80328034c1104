#include "platform/linux/ocr/Planes.h"

namespace nimbrelle {
namespace {

template <class Visit> void forEachBeside(std::size_t pixel, PlaneSize size, Visit visit)
{
    const auto width = static_cast<std::size_t>(size.width);
    if (pixel % width > 0)
        visit(pixel - 1);
    if (pixel % width + 1 < width)
        visit(pixel + 1);
    if (pixel >= width)
        visit(pixel - width);
    if (pixel + width < size.count())
        visit(pixel + width);
}

/// Adds to the piece whatever of `area` touches it and is not marked yet.
void complete(Piece &piece, Plane &marked, const Plane &area, PlaneSize size)
{
    for (std::size_t done = 0; done < piece.size(); ++done)
        forEachBeside(piece[done], size, [&](std::size_t beside) {
            if (area[beside] != 0 && marked[beside] == 0) {
                marked[beside] = 1;
                piece.push_back(beside);
            }
        });
}

} // namespace

Plane grown(Plane from, const Plane &area, PlaneSize size)
{
    Piece all;
    for (std::size_t i = 0; i < size.count(); ++i)
        if (from[i] != 0)
            all.push_back(i);
    complete(all, from, area, size);
    return from;
}

std::vector<Piece> piecesAt(const Plane &from, const Plane &area, PlaneSize size)
{
    std::vector<Piece> pieces;
    Plane marked(size.count());
    for (std::size_t i = 0; i < size.count(); ++i)
        if (from[i] != 0 && marked[i] == 0) {
            marked[i] = 1;
            complete(pieces.emplace_back(Piece{i}), marked, area, size);
        }
    return pieces;
}

std::size_t heightOf(const Piece &piece, PlaneSize size)
{
    const auto [first, last] = std::ranges::minmax(piece);
    const auto width = static_cast<std::size_t>(size.width);
    return last / width - first / width + 1;
}

bool isEdge(std::size_t pixel, const Plane &area, PlaneSize size)
{
    bool is = false;
    forEachBeside(pixel, size, [&](std::size_t beside) { is = is || area[beside] == 0; });
    return is;
}

} // namespace nimbrelle
