#pragma once

#include "platform/linux/wayland/PointerProbe.h"
#include "platform/linux/x11/XConnection.h"

#include <QElapsedTimer>
#include <QTimer>

namespace nimbrelle {

class XScreens;

/// By an invisible window of the X server that the compositor runs, over all monitors, for compositors that
/// offer no such surface of their own. It lasts until the first motion, which comes before any click could:
/// by itself, or at the release where a program that a button is held down in keeps the pointer.
class XProbe final : public QObject, public PointerProbe {
    Q_OBJECT

public:
    /// Both outlive this.
    XProbe(XConnection &x, const XScreens &screens);
    ~XProbe() override;

    bool isOffered() const override { return m_window != XCB_WINDOW_NONE && m_x.isOpen(); }

    void ask(std::function<void(std::optional<Answer>)> answered) override;

private:
    void create();
    void cover();
    void uncover();
    void handleEvent(const xcb_generic_event_t &event);
    void finish(std::optional<Answer> answer);

    XConnection &m_x;
    const XScreens &m_screens;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    bool m_isCovering = false;
    quint32 m_covered = 0; ///< the request that did it; what was told before it is stale
    std::function<void(std::optional<Answer>)> m_answered;
    QElapsedTimer m_since;
    QTimer m_watchdog;
};

} // namespace nimbrelle
