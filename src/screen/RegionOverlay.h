#pragma once

#include <QRectF>

#include <functional>
#include <optional>

namespace nimbrelle {

/// The translucent overlay over one screen on which the user drags a frame. While it is open it has the
/// keyboard focus and a crosshair.
class RegionOverlay {
public:
    virtual ~RegionOverlay() = default;

    /// Covers `screenFrame` (global points, y upward) until close(). `finished` is called once: with the
    /// frame relative to the screen's bottom left corner, y upward, or with nothing when the user gave up.
    virtual void open(const QRectF &screenFrame, std::function<void(std::optional<QRectF>)> finished) = 0;

    /// Takes it off the screen before it returns, so that no capture sees it. May be called from `finished`.
    virtual void close() = 0;
};

} // namespace nimbrelle
