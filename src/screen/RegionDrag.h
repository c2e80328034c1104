#pragma once

#include <QRectF>

#include <optional>

namespace nimbrelle {

/// One drag over a RegionOverlay, in the overlay's own coordinates, whichever way y grows.
class RegionDrag {
public:
    void press(QPointF at);
    void move(QPointF to);
    /// The frame; absent when it is too small to have been meant, as after a mere click.
    std::optional<QRectF> release(QPointF at);

    /// What is framed so far; absent before the press.
    std::optional<QRectF> rect() const;

private:
    std::optional<QPointF> m_start;
    QPointF m_current;
};

} // namespace nimbrelle
