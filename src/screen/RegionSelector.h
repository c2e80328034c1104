#pragma once

#include "platform/FrontApplication.h"

#include <QPointF>
#include <QRectF>

#include <functional>
#include <optional>

namespace nimbrelle {

class Pointer;
class Screens;

/// The shade over one screen on which the user drags a frame. While it is up it has the keyboard focus and a
/// crosshair. Its views tell their mouse and keys to a RegionDrag.
class RegionOverlay {
public:
    virtual ~RegionOverlay() = default;

    /// Covers `screenFrame` (global points, y upward) until close(). `finished` is called once: with the
    /// frame relative to the screen's bottom left corner, y upward, or with nothing when the user gave up.
    virtual void open(const QRectF &screenFrame, std::function<void(std::optional<QRectF>)> finished) = 0;

    /// Takes it off the screen before it returns, so that no capture sees it. May be called from `finished`.
    virtual void close() = 0;
};

/// One drag over an overlay, in the overlay's own coordinates, whichever way y grows.
class RegionDrag {
public:
    void press(QPointF at);
    void move(QPointF to);
    /// The frame; absent when it is too small to have been meant, as after a mere click.
    std::optional<QRectF> release(QPointF at);

    /// What is framed so far.
    std::optional<QRectF> rect() const;

private:
    std::optional<QPointF> m_start;
    QPointF m_current;
};

/// Lets the user frame a part of the screen that the pointer is on.
class RegionSelector {
public:
    RegionSelector(
        const Screens &screens, const Pointer &pointer, FrontApplication &front, RegionOverlay &overlay);

    /// Ends an earlier selection. `onSelect` gets the frame in global points once the overlay is gone; it is
    /// not called when the user gives up.
    void begin(std::function<void(QRectF)> onSelect);

    /// Ends the selection without a result and gives the keyboard focus back. Does nothing when there is
    /// none.
    void cancel();

    bool isSelecting() const { return m_selecting; }

private:
    void finish(QPointF screenCorner, std::optional<QRectF> frame);

    const Screens &m_screens;
    const Pointer &m_pointer;
    FrontApplication &m_front;
    RegionOverlay &m_overlay;

    bool m_selecting = false;
    std::optional<Application> m_previous;
    std::function<void(QRectF)> m_onSelect;
};

} // namespace nimbrelle
