#pragma once

#include "platform/FrontApplication.h"

#include <QRectF>

#include <functional>

namespace nimbrelle {

class Pointer;
class RegionOverlay;
class Screens;

/// Lets the user frame a part of the screen that the pointer is on.
class RegionSelector {
public:
    RegionSelector(
        const Screens &screens, const Pointer &pointer, FrontApplication &front, RegionOverlay &overlay);

    /// Ends an earlier selection. `onSelect` gets the frame in global points once the overlay is gone; it is
    /// not called when the user gives up.
    void begin(std::function<void(QRectF)> onSelect);

    bool isOpen() const { return static_cast<bool>(m_onSelect); }

    /// Ends the selection without a result and gives the keyboard focus back. Does nothing when there is
    /// none.
    void cancel();

private:
    void finish(QPointF screenCorner, std::optional<QRectF> frame);

    const Screens &m_screens;
    const Pointer &m_pointer;
    FrontApplication &m_front;
    RegionOverlay &m_overlay;

    std::function<void(QRectF)> m_onSelect; // empty while nothing is being selected
    std::optional<Application> m_previousApp;
};

} // namespace nimbrelle
