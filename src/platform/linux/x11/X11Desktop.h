#pragma once

#include "platform/linux/x11/XClipboard.h"
#include "platform/linux/x11/XFrontApplication.h"
#include "platform/linux/x11/XInput.h"
#include "platform/linux/x11/XScreenCapture.h"
#include "platform/linux/x11/XScreens.h"
#include "platform/linux/x11/XSettings.h"
#include "platform/linux/x11/XWindowAtPointer.h"
#include "platform/linux/x11/XWindowSystem.h"

namespace nimbrelle {

/// The services that an X server gives, over one connection. Without a display each says that it can't, and
/// nothing fails.
struct X11Desktop {
    XConnection x;
    XScreens screens{x};
    XWindowSystem windowSystem{x, screens};
    XPointer pointer{x, screens};
    XKeyboard keyboard{x};
    XKeySender keySender{x, keyboard, pointer};
    XFrontApplication frontApplication{x};
    XWindowAtPointer windowAtPointer{x, frontApplication, screens};
    XInputMonitor input{x, screens, pointer, keyboard, keySender, windowAtPointer};
    XClipboard clipboard{x};
    XPrimarySelection primarySelection{x};
    XScreenCapture capture{x, screens};
    XSettings settings{x};
};

} // namespace nimbrelle
