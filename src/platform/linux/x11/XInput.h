#pragma once

#include "platform/InputMonitor.h"
#include "platform/KeySender.h"
#include "platform/linux/x11/ClickCounter.h"
#include "platform/linux/x11/XConnection.h"

#include <array>
#include <optional>

namespace nimbrelle {

class XScreens;
class XWindowAtPointer;

/// Where the pointer is, in one round trip of 40 to 300 microseconds.
class XPointer final : public Pointer {
public:
    XPointer(XConnection &x, const XScreens &screens) : m_x(x), m_screens(screens) { }

    QPointF location() const override;
    quint32 pressedButtons() const override;
    ModifierFlags modifiers() const override;
    QCoro::Task<std::optional<QPointF>> locate() override;

    /// location() in pixels of the root window; the origin after the server has gone.
    QPoint pixel() const;
    bool isAnyButtonDown() const;

private:
    XReply<xcb_query_pointer_reply_t> query() const;

    XConnection &m_x;
    const XScreens &m_screens;
};

/// The keyboard's map, read again when it changes.
class XKeyboard final : public QObject {
    Q_OBJECT

public:
    explicit XKeyboard(XConnection &x);

    quint32 keysym(xcb_keycode_t key) const;
    /// A key that gives `keysym`, with or without shift; absent where the layout has none.
    std::optional<xcb_keycode_t> keyFor(quint32 keysym) const;
    /// A key that stands for nothing in this layout; absent where each means something.
    std::optional<xcb_keycode_t> unmappedKey() const;
    /// What a mouse button counts as after the user's mapping (left-handed or not).
    quint32 logicalButton(quint32 physical) const;

private:
    void read();

    XConnection &m_x;
    int m_first = 0;
    int m_width = 0;
    std::vector<quint32> m_keysyms;
    std::vector<quint8> m_buttons;
};

/// The user's keys through the XTEST extension. It notes which requests were its own, so that the monitor
/// on the same connection can tell the events that they caused from the user's.
class XKeySender final : public KeySender {
public:
    XKeySender(XConnection &x, const XKeyboard &keyboard, const Pointer &pointer)
        : m_x(x), m_keyboard(keyboard), m_pointer(pointer)
    {
    }

    bool sendCopy() override;
    quint32 copiedAt() const override { return m_copiedAt; }
    void tapNothing() override;

    /// The server's time of a key that caused() holds for.
    void noteTime(quint32 time);

    /// Whether the server sent an event while it carried out what we posted last.
    bool caused(quint32 sequence) const
    {
        return m_firstRequest && sequence - *m_firstRequest <= m_lastRequest - *m_firstRequest;
    }

private:
    struct Stroke {
        quint8 type;
        xcb_keycode_t key;
    };

    void post(const QList<Stroke> &strokes);

    XConnection &m_x;
    const XKeyboard &m_keyboard;
    const Pointer &m_pointer;
    bool m_isCopying = false; ///< what was posted last is the copy shortcut
    quint32 m_copiedAt = 0;
    std::optional<quint32> m_firstRequest;
    quint32 m_lastRequest = 0;
};

/// XInput 2 raw events: they come whichever window has the focus or holds a grab.
class XInputMonitor final : public InputMonitor {
    Q_OBJECT

public:
    XInputMonitor(XConnection &x, const XScreens &screens, const XPointer &pointer, const XKeyboard &keyboard,
        XKeySender &sender, const XWindowAtPointer &window);

    bool canWatch() const override { return m_canWatch && m_x.isOpen(); }
    void start() override;
    void stop() override;

private:
    void select(quint32 rawEvents) const;
    void handleEvent(const xcb_generic_event_t &event);
    void handleRawEvent(const xcb_ge_generic_event_t &event);
    void handlePress(const xcb_input_raw_button_press_event_t &event);
    void handleRelease();
    void handleKey(xcb_keycode_t key);
    void handleModifiers(const xcb_xkb_state_notify_event_t &event);
    void emitMove();
    bool hasOwnFocus() const;

    XConnection &m_x;
    const XScreens &m_screens;
    const XPointer &m_pointer;
    const XKeyboard &m_keyboard;
    XKeySender &m_sender;
    const XWindowAtPointer &m_window;
    ClickCounter m_clicks;
    bool m_canWatch = false;
    bool m_started = false;
    bool m_moved = false; ///< a move is still to be told: of many at once, only the last matters
    int m_pressCount = 0; ///< the click count of the left button while it is down for another program
    ModifierFlags m_held = 0;
};

/// X11 lets everybody listen; a Wayland session shows us only what goes to X windows, which is worse than
/// nothing.
bool isWaylandSession();

} // namespace nimbrelle
