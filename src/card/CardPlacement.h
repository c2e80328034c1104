#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace nimbrelle {

/// The frame of a card of `size` for `anchor`, the point that it explains: just below it, above it where
/// there is no space below, and inside `visible`, the part of the screen that is free of panels. All in
/// global points, y upward.
QRectF placedCard(QPointF anchor, QSizeF size, const QRectF &visible);

} // namespace nimbrelle
