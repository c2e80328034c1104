#pragma once

#include "platform/linux/x11/ScreenLayout.h"
#include "platform/linux/x11/XConnection.h"

#include <optional>

namespace nimbrelle {

/// The monitors as RandR has them, less the room that panels keep for themselves. Read again after a change.
class XScreens final : public QObject, public Screens {
    Q_OBJECT

public:
    explicit XScreens(XConnection &x);

    QList<Screen> all() const override { return layout().screens(); }

    const ScreenLayout &layout() const;

private:
    void handleEvent(const xcb_generic_event_t &event);
    QList<Monitor> readMonitors() const;
    QList<Strut> readStruts() const;
    QList<QRect> readWorkAreas() const;

    XConnection &m_x;
    mutable std::optional<ScreenLayout> m_layout;
};

} // namespace nimbrelle
