#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/wayland/Protocols.h"

#include <QObject>

#include <functional>

namespace nimbrelle {

class WaylandConnection;
class XScreens;

/// Pictures by the compositor's screencopy protocol: silent, and in its own pixels, which may be finer than
/// the X server's. Our own windows are in them.
class WlrCapture final : public ScreenCapture {
public:
    /// `toLogical` turns pixels of the X server's root window into the compositor's.
    WlrCapture(
        WaylandConnection &connection, const XScreens &screens, std::function<QPointF(QPoint)> toLogical);

    bool isAllowed() const override;
    bool showsOwnWindows() const override { return true; }
    QCoro::Task<Picture> capture(Screen screen, QRectF area) override;

private:
    WaylandConnection &m_connection;
    const XScreens &m_screens;
    const std::function<QPointF(QPoint)> m_toLogical;
    Owned<zwlr_screencopy_manager_v1> m_manager;
};

} // namespace nimbrelle
