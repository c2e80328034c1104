#pragma once

#include "platform/Screens.h"

#include <QRect>
#include <QSize>

#include <vector>

namespace nimbrelle {

/// One monitor as the X server has it: pixels of the root window, origin at its top left, y downward.
struct Monitor {
    quint32 id = 0;
    QRect frame;
    QRect workArea;
    double scale = 1;

    bool operator==(const Monitor &) const = default;
};

/// Space that a panel keeps for itself at one edge of the root window, over a part of that edge.
struct Strut {
    enum class Edge { left, right, top, bottom };

    Edge edge = Edge::left;
    int depth = 0; ///< in pixels from the root window's edge
    int from = 0; ///< along the edge, both ends included
    int to = 0;
};

/// The frame less the struts that reach into it. A strut that would leave nothing is passed over.
QRect workAreaOf(const QRect &frame, QSize root, const QList<Strut> &struts);

/// The twelve values of _NET_WM_STRUT_PARTIAL, or the four of _NET_WM_STRUT over the whole edge.
QList<Strut> strutsOf(const std::vector<quint32> &values);

/// The one place where pixels become points and y is turned over. As the toolkit does it, a monitor keeps its
/// pixel position and only its size is divided by its scale; so points of one monitor never need another's.
class ScreenLayout {
public:
    ScreenLayout() = default;
    /// The main monitor first.
    explicit ScreenLayout(QList<Monitor> monitors) : m_monitors(std::move(monitors)) { }

    QList<Screen> screens() const;

    /// What all monitors cover, in pixels; null where there is none.
    QRect bounds() const;

    /// Of a pixel on no monitor too: it is then counted from the nearest one, and lies on none.
    QPointF pointOf(QPoint pixel) const;

    /// The same as the toolkit counts: y downward, from the root window's corner.
    QPoint toolkitPointOf(QPoint pixel) const;

    /// The pixels of an area in points relative to the screen's top-left corner, cut to the screen. Null
    /// where nothing is left or the screen is unknown.
    QRect pixelsOf(quint32 screen, const QRectF &area) const;

private:
    QRectF turned(const Monitor &monitor, const QRect &pixels) const;
    const Monitor *nearest(QPoint pixel) const;

    QList<Monitor> m_monitors;
};

} // namespace nimbrelle
