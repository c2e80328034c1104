#pragma once

#include "platform/InputMonitor.h"
#include "platform/linux/wayland/MarkDetector.h"

#include <QCoro/QCoroTask>

namespace nimbrelle {

class SessionPointer;
class SessionWindows;
class XScreens;

/// What a Wayland session lets us know of the user's input: that text was marked, and where.
class WaylandInput final : public InputMonitor {
    Q_OBJECT

public:
    /// Everything outlives this. `canMark`: what programs mark and where the pointer is can both be heard of.
    struct Parts {
        Clock &clock;
        PointerProbe &probe;
        SessionPointer &pointer;
        SessionWindows &windows;
        const XScreens &screens;
        std::function<bool()> canMark;
        /// Whether what is marked now is this program's own text.
        std::function<bool()> isOwnSelection;
    };

    explicit WaylandInput(const Parts &parts);

    bool canWatch() const override { return m_parts.canMark(); }
    bool hearsPresses() const override { return false; }
    void start() override { m_isStarted = true; }
    void stop() override;

    /// To be told by those who hear of it.
    void selectionClaimed();
    void selectionGone();
    void focusMoved();

private:
    QCoro::Task<> tellMarked(QPoint pixel);

    const Parts m_parts;
    MarkDetector m_detector;
    bool m_isStarted = false;
};

} // namespace nimbrelle
