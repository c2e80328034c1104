#include "screen/ScreenPiece.h"

namespace nimbrelle {

namespace {

constexpr QSizeF sizeAroundPointer{760, 200};
constexpr double leastAroundPointer = 20;
constexpr double leastOfFrame = 8;

std::optional<ScreenPiece> clipped(const Screen &screen, const QRectF &area, double moreThan)
{
    const QRectF inside = area.intersected(QRectF(QPointF(0, 0), screen.frame.size()));
    if (inside.width() <= moreThan || inside.height() <= moreThan)
        return std::nullopt;
    return ScreenPiece{screen, inside};
}

QPointF topLeftFromGlobal(const Screen &screen, QPointF point)
{
    return nimbrelle::topLeftFromGlobal(screen, QRectF(point, QSizeF(0, 0))).topLeft();
}

} // namespace

std::optional<ScreenPiece> ScreenPiece::around(QPointF point, const Screen &screen)
{
    QRectF area(QPointF(0, 0), sizeAroundPointer);
    area.moveCenter(topLeftFromGlobal(screen, point));
    return clipped(screen, area, leastAroundPointer);
}

std::optional<ScreenPiece> ScreenPiece::of(const QRectF &rect, const Screen &screen)
{
    return clipped(screen, nimbrelle::topLeftFromGlobal(screen, rect), leastOfFrame);
}

QPointF ScreenPiece::normalized(QPointF global) const
{
    const QPointF inArea = topLeftFromGlobal(screen, global) - area.topLeft();
    return {inArea.x() / area.width(), 1 - inArea.y() / area.height()};
}

QRectF ScreenPiece::toGlobal(const QRectF &box) const
{
    const QPointF topLeft(area.x() + box.x() * area.width(), area.y() + (1 - box.bottom()) * area.height());
    const QSizeF size(box.width() * area.width(), box.height() * area.height());
    return globalFromTopLeft(screen, QRectF(topLeft, size));
}

} // namespace nimbrelle
