#pragma once

#include "platform/InputMonitor.h"
#include "platform/KeySender.h"
#include "platform/WindowAtPointer.h"
#include "platform/linux/ProgramKinds.h"
#include "platform/linux/wayland/PointerProbe.h"
#include "platform/linux/wayland/SessionWindows.h"

namespace nimbrelle {

class XScreens;

/// Where the pointer was when the desktop last told. No Wayland session tells of buttons and keys.
class SessionPointer final : public Pointer {
public:
    SessionPointer(PointerProbe &probe, const XScreens &screens) : m_probe(probe), m_screens(screens) { }

    QPointF location() const override;
    quint32 pressedButtons() const override { return 0; }
    ModifierFlags modifiers() const override { return 0; }
    QCoro::Task<std::optional<QPointF>> locate() override;

    QPoint pixel() const { return m_pixel; }
    void moveTo(QPoint pixel) { m_pixel = pixel; }

private:
    PointerProbe &m_probe;
    const XScreens &m_screens;
    QPoint m_pixel;
};

/// The program in front, as the session tells of its windows.
class SessionFront final : public FrontApplication {
public:
    explicit SessionFront(SessionWindows &windows) : m_windows(windows) { }

    std::optional<Application> current() const override;
    bool isTold() const override { return m_windows.isTold(); }
    std::optional<QString> ownBundleID() const override { return ownProgram().bundleID; }
    void activate(const Application &application) override { m_windows.activate(application); }

private:
    SessionWindows &m_windows;
};

/// The window that lies where the pointer was last. Menus and panels can't be told from what lies below them,
/// but nothing is marked in them either.
class SessionWindowAtPointer final : public WindowAtPointer {
public:
    SessionWindowAtPointer(
        const SessionWindows &windows, const SessionPointer &pointer, const XScreens &screens)
        : m_windows(windows), m_pointer(pointer), m_screens(screens)
    {
    }

    PointedWindow current() const override;
    QRectF areaOf(const Application &application) const override;
    bool isGrabbed() const override { return false; }

private:
    QRectF pointsOf(const QRect &pixels) const;

    const SessionWindows &m_windows;
    const SessionPointer &m_pointer;
    const XScreens &m_screens;
};

/// Nobody types for the user in a Wayland session.
class NoKeySender final : public KeySender {
public:
    bool sendCopy() override { return false; }
    quint32 copiedAt() const override { return 0; }
    void tapNothing() override { }
};

} // namespace nimbrelle
