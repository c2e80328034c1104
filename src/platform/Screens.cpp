#include "platform/Screens.h"

#include <algorithm>

namespace nimbrelle {

bool holds(const QRectF &area, QPointF point)
{
    return point.x() >= area.left() && point.x() < area.right() && point.y() > area.top()
        && point.y() <= area.bottom();
}

std::optional<Screen> screenHolding(const QList<Screen> &screens, QPointF point)
{
    const auto found =
        std::ranges::find_if(screens, [&](const Screen &screen) { return holds(screen.frame, point); });
    return found == screens.end() ? std::nullopt : std::optional{*found};
}

QRectF globalFromTopLeft(const Screen &screen, const QRectF &area)
{
    return {screen.frame.left() + area.left(), screen.frame.bottom() - area.bottom(), area.width(),
        area.height()};
}

QRectF topLeftFromGlobal(const Screen &screen, const QRectF &area)
{
    return {area.left() - screen.frame.left(), screen.frame.bottom() - area.bottom(), area.width(),
        area.height()};
}

} // namespace nimbrelle
