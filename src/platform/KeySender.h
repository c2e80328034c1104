#pragma once

#include <QtGlobal>

namespace nimbrelle {

/// Types for the user, into the program in front.
class KeySender {
public:
    virtual ~KeySender() = default;

    /// Presses and releases the copy shortcut. False, and nothing is sent, while the user holds a modifier or
    /// where the session can't do it. It does harm in many programs: ask mayCopy() of CopyRules.h first.
    virtual bool sendCopy() = 0;

    /// When it was last sent, in the desktop's own milliseconds, which wrap; 0: not known.
    virtual quint32 copiedAt() const = 0;

    /// Taps a key that stands for nothing. A modifier that the user holds meanwhile was then not pressed
    /// alone, so that its release opens no menu and no launcher.
    virtual void tapNothing() = 0;
};

} // namespace nimbrelle
