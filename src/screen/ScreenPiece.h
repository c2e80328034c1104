#pragma once

#include "platform/Screens.h"

namespace nimbrelle {

/// The part of one screen that is looked at, and how its picture maps to the screen.
struct ScreenPiece {
    Screen screen;
    QRectF area; ///< from the screen's top-left corner, y downward, as captures take it

    /// What is taken round a pointer: 760 by 200 points, less what lies beyond the screen's edges. Absent
    /// when no more than 20 points remain in either direction.
    static std::optional<ScreenPiece> around(QPointF point, const Screen &screen);

    /// The part of `rect`, in global points, on the screen; absent unless more than 8 points wide and high.
    static std::optional<ScreenPiece> of(const QRectF &rect, const Screen &screen);

    /// From global points to 0...1 of the picture, origin at its bottom left, y upward.
    QPointF normalized(QPointF global) const;

    /// The other way round, for a box.
    QRectF toGlobal(const QRectF &normalized) const;
};

} // namespace nimbrelle
