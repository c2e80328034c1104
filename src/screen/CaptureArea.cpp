#include "screen/CaptureArea.h"

namespace nimbrelle {

namespace {

constexpr double minAroundPointer = 20;
constexpr double minOfFrame = 8;

std::optional<CaptureArea> clipped(const Screen &screen, const QRectF &area, double moreThan)
{
    const QRectF inside = area.intersected(QRectF(QPointF(0, 0), screen.frame.size()));
    if (inside.width() <= moreThan || inside.height() <= moreThan)
        return std::nullopt;
    return CaptureArea{.screen = screen, .rect = inside};
}

QPointF topLeftFromGlobal(const Screen &screen, QPointF point)
{
    return nimbrelle::topLeftFromGlobal(screen, QRectF(point, QSizeF(0, 0))).topLeft();
}

} // namespace

std::optional<CaptureArea> CaptureArea::around(QPointF point, const Screen &screen)
{
    QRectF area(0, 0, mostWidth, mostHeight);
    area.moveCenter(topLeftFromGlobal(screen, point));
    return clipped(screen, area, minAroundPointer);
}

std::optional<CaptureArea> CaptureArea::of(const QRectF &global, const Screen &screen)
{
    return clipped(screen, nimbrelle::topLeftFromGlobal(screen, global), minOfFrame);
}

QPointF CaptureArea::normalized(QPointF global) const
{
    const QPointF inside = topLeftFromGlobal(screen, global) - rect.topLeft();
    return {inside.x() / rect.width(), 1 - inside.y() / rect.height()};
}

QRectF CaptureArea::normalized(const QRectF &global) const
{
    return {normalized(global.topLeft()), normalized(global.bottomRight())};
}

QRectF CaptureArea::toGlobal(const QRectF &box) const
{
    const QPointF topLeft(rect.x() + box.x() * rect.width(), rect.y() + (1 - box.bottom()) * rect.height());
    const QSizeF size(box.width() * rect.width(), box.height() * rect.height());
    return globalFromTopLeft(screen, QRectF(topLeft, size));
}

} // namespace nimbrelle
