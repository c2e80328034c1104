#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>

#include <optional>

namespace nimbrelle {

/// All in points, global, origin at the bottom left of the main screen, y upward: QRectF::top() is the lower
/// edge of a frame, and x or y are negative left of or below the main screen.
struct Screen {
    quint32 id = 0;
    QRectF frame;
    QRectF workArea; ///< the frame less panels and docks
    double scale = 1; ///< pixels for each point

    bool operator==(const Screen &) const = default;
};

class Screens {
public:
    virtual ~Screens() = default;

    /// As they are now, the main screen first. Empty in a session without any.
    virtual QList<Screen> all() const = 0;
};

/// Whether a pointer at `point` is in `area`: the left and the upper edge belong to it, the others don't, so
/// that of two neighbours only one holds it.
bool holds(const QRectF &area, QPointF point);

/// The first screen whose frame holds the point.
std::optional<Screen> screenHolding(const QList<Screen> &screens, QPointF point);

/// `area` from coordinates relative to the screen's top-left corner, y downward, into global ones, and back.
QRectF globalFromTopLeft(const Screen &screen, const QRectF &area);
QRectF topLeftFromGlobal(const Screen &screen, const QRectF &area);

} // namespace nimbrelle
