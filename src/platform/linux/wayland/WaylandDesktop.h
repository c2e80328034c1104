#pragma once

#include "frame/Clock.h"
#include "platform/ScreenCapture.h"
#include "platform/linux/wayland/PointerProbe.h"
#include "platform/linux/wayland/SessionFront.h"
#include "platform/linux/wayland/WaylandConnection.h"
#include "platform/linux/wayland/WaylandInput.h"
#include "platform/linux/wayland/WaylandPrimary.h"
#include "platform/linux/x11/XInput.h"

namespace nimbrelle {

class AtSpiBus;
struct X11Desktop;

/// The services of a Wayland session, each by whatever this session offers for it. Windows are still shown
/// through the X server that the compositor runs: only there may they be placed.
class WaylandDesktop {
public:
    /// Both outlive this.
    WaylandDesktop(X11Desktop &x11, AtSpiBus &accessibilityBus);

    static bool isHere() { return isWaylandSession(); }

private:
    /// @name What this session offers
    /// @{
    std::unique_ptr<PointerProbe> makeProbe();
    std::unique_ptr<SessionWindows> makeWindows();
    std::unique_ptr<ScreenCapture> makeCapture();
    /// @}

    bool canMark() const;
    bool showsPrimaryToX() const;
    QPoint pixelOf(QPointF logical) const;
    QPointF logicalOf(QPoint pixel) const;
    /// How many of the X server's pixels the compositor shows as one of its own.
    double xScale() const;
    QRect allOutputs() const;

    X11Desktop &m_x11;
    AtSpiBus &m_accessibilityBus;
    WaylandConnection m_connection;
    WaylandPrimary m_primary{m_connection};
    std::unique_ptr<PointerProbe> m_probe;
    std::unique_ptr<SessionWindows> m_windows;
    std::unique_ptr<ScreenCapture> m_capture;

public:
    SessionPointer pointer;
    SessionFront frontApplication;
    SessionWindowAtPointer windowAtPointer;
    WaylandInput input;
    NoKeySender keySender;
    ScreenCapture &capture;
    PrimarySelection &primarySelection;
};

} // namespace nimbrelle
