#pragma once

#include "platform/WindowAtPointer.h"
#include "platform/linux/x11/XConnection.h"

#include <vector>

namespace nimbrelle {

class XFrontApplication;
class XScreens;

/// The windows under the pointer, asked for one level after another: half a millisecond in all.
class XWindowAtPointer final : public WindowAtPointer {
public:
    XWindowAtPointer(XConnection &x, const XFrontApplication &applications, const XScreens &screens);

    PointedWindow current() const override;
    QRectF areaOf(const Application &application) const override;
    bool isGrabbed() const override;

    /// Whether the pointer is over a window of this program, or the frame round one.
    bool isOwn() const { return isOwn(windowsAtPointer()); }

private:
    using Windows = std::vector<xcb_window_t>; ///< from the root's child down

    Windows windowsAtPointer() const;
    bool isOwn(const Windows &windows) const;
    bool isOfType(xcb_window_t window, const std::vector<xcb_atom_t> &types) const;
    bool hasTextCursor() const;

    XConnection &m_x;
    const XFrontApplication &m_applications;
    const XScreens &m_screens;
    std::vector<xcb_atom_t> m_menuTypes;
    xcb_window_t m_unmapped = XCB_WINDOW_NONE;
};

} // namespace nimbrelle
