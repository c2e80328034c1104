#pragma once

#include "platform/DesktopAppearance.h"
#include "platform/linux/x11/XConnection.h"

#include <QHash>
#include <QVariant>

namespace nimbrelle {

/// The whole numbers and texts in a settings manager's property, by name. What comes before a fault in it
/// is kept.
QHash<QByteArray, QVariant> xSettingsOf(const QByteArray &property);

/// The settings that desktops without a portal share by the X server, and their later changes.
class XSettings final : public QObject {
    Q_OBJECT

public:
    explicit XSettings(XConnection &x);

    /// `guess`, but for what the settings say themselves.
    Appearance refined(Appearance guess) const;

signals:
    void changed();

private:
    void findManager();
    void read();
    void handleEvent(const xcb_generic_event_t &event);

    XConnection &m_x;
    xcb_window_t m_manager = XCB_WINDOW_NONE;
    QHash<QByteArray, QVariant> m_settings;
};

} // namespace nimbrelle
