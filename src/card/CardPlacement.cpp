#include "card/CardPlacement.h"

#include <algorithm>

namespace nimbrelle {

namespace {

constexpr double leftOfAnchor = 24;
constexpr double gapToAnchor = 18;
constexpr double edge = 8;

} // namespace

QRectF placedCard(QPointF anchor, QSizeF size, const QRectF &visible)
{
    const QPointF least(visible.x() + edge, visible.y() + edge);
    const QPointF most(visible.x() + visible.width() - size.width() - edge,
        visible.y() + visible.height() - size.height() - edge);
    double y = anchor.y() - gapToAnchor - size.height();
    if (y < least.y())
        y = anchor.y() + gapToAnchor;
    // The far edge comes last: a card too large for the screen loses its near side.
    const double x = std::min(std::max(anchor.x() - leftOfAnchor, least.x()), most.x());
    return {QPointF(x, std::min(std::max(y, least.y()), most.y())), size};
}

} // namespace nimbrelle
