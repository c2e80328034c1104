#pragma once

#include "platform/FrontApplication.h"
#include "platform/linux/ProgramKinds.h"
#include "platform/linux/files/DesktopEntry.h"
#include "platform/linux/x11/XConnection.h"

namespace nimbrelle {

/// The active window as the window manager tells it, in two round trips.
class XFrontApplication final : public FrontApplication {
public:
    explicit XFrontApplication(XConnection &x) : m_x(x) { }

    std::optional<Application> current() const override;
    std::optional<QString> ownBundleID() const override { return ownProgram().bundleID; }
    void activate(const Application &application) override;

    Application applicationOf(xcb_window_t window) const;

    /// The classes of all windows but our own.
    QList<WindowClass> openWindows() const;

private:
    XConnection &m_x;
    mutable ProgramNames m_names;
};

} // namespace nimbrelle
