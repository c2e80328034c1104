#pragma once

#include <QPoint>

namespace nimbrelle {

/// What our own windows need of the session beyond the toolkit.
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    /// Whether somebody blends windows, so that one may be translucent. It can change at any time.
    virtual bool isComposited() const = 0;

    /// Sends what the toolkit has drawn, which else waits for the event loop.
    virtual void flush() = 0;

    /// A pixel of the whole desktop, origin at its top left, y downward, as the toolkit counts it.
    virtual QPoint toolkitPointOf(QPoint pixel) const = 0;
};

} // namespace nimbrelle
