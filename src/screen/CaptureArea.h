#pragma once

#include "platform/Screens.h"

namespace nimbrelle {

/// The part of one screen that is captured, and how its picture maps to the screen.
struct CaptureArea {
    Screen screen;
    QRectF rect; ///< from the screen's top-left corner, y downward, as captures take it

    static constexpr double mostWidth = 760; ///< of one look at what lies round a pointer
    static constexpr double mostHeight = 200;

    /// What is taken round a pointer: as much as one look may take, less what lies beyond the screen's edges.
    /// Absent when no more than 20 points remain in either direction.
    static std::optional<CaptureArea> around(QPointF point, const Screen &screen);

    /// The part of `global`, in global points, on the screen; absent unless more than 8 points wide and high.
    static std::optional<CaptureArea> of(const QRectF &global, const Screen &screen);

    /// From global points to 0...1 of the picture, origin at its bottom left, y upward.
    QPointF normalized(QPointF global) const;
    QRectF normalized(const QRectF &global) const;

    /// A box in such coordinates back to global points.
    QRectF toGlobal(const QRectF &box) const;
};

} // namespace nimbrelle
