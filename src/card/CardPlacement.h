#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace nimbrelle {

/// Where a card of `size` stands for `anchor`, the point it speaks of: just below it, above it where there is
/// no room below, and inside `visible`, the part of the screen that is free of panels. All in global points,
/// y upward.
QRectF placedCard(QPointF anchor, QSizeF size, const QRectF &visible);

} // namespace nimbrelle
