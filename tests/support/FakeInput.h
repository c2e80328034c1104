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
    QCoro::Task<std::optional<QPointF>> locate() override
    {
        co_return tellsLocation ? std::optional(at) : std::nullopt;
    }

    QPointF at;
    bool tellsLocation = true;
    quint32 buttons = 0;
    ModifierFlags held = 0;
};

/// Simulates the user's input: each act changes the pointer's state and emits the events of it.
class FakeInputMonitor final : public InputMonitor {
public:
    explicit FakeInputMonitor(FakePointer &pointer) : m_pointer(pointer) { }

    bool canWatch() const override { return true; }
    void start() override { started = true; }
    void stop() override { started = false; }

    void press(QPointF at, int clickCount = 1)
    {
        m_pointer.at = at;
        m_pointer.buttons |= 1;
        emit mousePressed(at, clickCount);
    }
    void release(QPointF at, int clickCount = 1)
    {
        m_pointer.at = at;
        m_pointer.buttons &= ~1U;
        emit mouseReleased(at, clickCount);
    }
    void drag(QPointF from, QPointF to)
    {
        press(from);
        move(to);
        release(to);
    }
    void click(QPointF at, int clickCount = 1)
    {
        press(at, clickCount);
        release(at, clickCount);
    }
    void move(QPointF to)
    {
        m_pointer.at = to;
        if (m_pointer.buttons & 1U)
            emit mouseDragged(to);
        else
            emit mouseMoved(to);
    }
    void hold(ModifierFlags flags)
    {
        m_pointer.held = flags;
        emit modifiersChanged(flags);
    }
    void type(Key key = Key::other) { emit keyPressed(key); }

    bool started = false;

private:
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

    void tapNothing() override { ++taps; }

    quint32 copiedAt() const override { return sentAt; }

    quint32 sentAt = 0;
    int copies = 0;
    int taps = 0; ///< of the key that stands for nothing
    bool works = true;
    std::function<void()> whenCopied; ///< what the program in front does about it
};

} // namespace nimbrelle
