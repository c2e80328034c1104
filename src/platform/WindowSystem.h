#pragma once

#include <QList>
#include <QMargins>
#include <QPoint>
#include <QRect>

namespace nimbrelle {

/// What our own windows need of the session beyond the toolkit.
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    /// Whether somebody blends windows, so that one may be translucent. It can change at any time.
    virtual bool isComposited() const = 0;

    /// What can be seen of a window of ours that has a transparent margin, in its own pixels, so that clicks
    /// beside it reach what lies below. The window must exist.
    virtual void setVisibleArea(quintptr window, const QList<QRect> &area, const QMargins &margin) = 0;

    /// Sends what the toolkit has drawn, which else waits for the event loop.
    virtual void flush() = 0;

    /// A pixel of the whole desktop, origin at its top left, y downward, as the toolkit counts it.
    virtual QPoint toolkitPointOf(QPoint pixel) const = 0;
};

} // namespace nimbrelle
