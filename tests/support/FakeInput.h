#pragma once

#include "platform/InputMonitor.h"
#include "platform/KeySender.h"

#include <functional>

namespace nimbrelle {

class FakePointer final : public Pointer {
public:
    QPointF location() const override { return at; }
    quint32 pressedButtons() const override { return buttons; }
    ModifierFlags modifiers() const override { return held; }

    QPointF at;
    quint32 buttons = 0;
    ModifierFlags held = 0;
};

/// Plays the user's hand: each act moves the pointer's state along and tells of it, while it is started.
class FakeInputMonitor final : public InputMonitor {
public:
    explicit FakeInputMonitor(FakePointer &pointer) : m_pointer(pointer) { }

    bool canWatch() const override { return watchable; }
    void start() override { started = true; }
    void stop() override { started = false; }

    void press(QPointF at)
    {
        m_pointer.at = at;
        m_pointer.buttons |= 1;
        tell([&] { emit mousePressed(at); });
    }
    void release(QPointF at, int clickCount = 1)
    {
        m_pointer.at = at;
        m_pointer.buttons &= ~1U;
        tell([&] { emit mouseReleased(at, clickCount); });
    }
    /// Press, move and release, as for marking a passage.
    void drag(QPointF from, QPointF to)
    {
        press(from);
        release(to);
    }
    void click(QPointF at, int clickCount = 1)
    {
        press(at);
        release(at, clickCount);
    }
    void move(QPointF to)
    {
        m_pointer.at = to;
        tell([&] { emit mouseMoved(to); });
    }
    void hold(ModifierFlags flags)
    {
        m_pointer.held = flags;
        tell([&] { emit modifiersChanged(flags); });
    }
    void type(Key key = Key::other)
    {
        tell([&] { emit keyPressed(key); });
    }
    void scroll()
    {
        tell([&] { emit scrolled(); });
    }

    bool watchable = true;
    bool started = false;

private:
    void tell(const std::function<void()> &event) const
    {
        if (started)
            event();
    }

    FakePointer &m_pointer;
};

class FakeKeySender final : public KeySender {
public:
    bool sendCopy() override
    {
        ++copies;
        if (works && whenCopied)
            whenCopied();
        return works;
    }

    int copies = 0;
    bool works = true;
    std::function<void()> whenCopied; ///< what the program in front does about it
};

} // namespace nimbrelle
