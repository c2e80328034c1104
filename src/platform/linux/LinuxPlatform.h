#pragma once

#include "platform/linux/AtSpiReader.h"
#include "platform/linux/AutostartFile.h"
#include "platform/linux/DesktopFileApplications.h"
#include "platform/linux/LinuxPermissions.h"
#include "platform/linux/PortalAppearance.h"
#include "platform/linux/SpeechProcess.h"
#include "platform/linux/TesseractRecogniser.h"
#include "platform/linux/XClipboard.h"
#include "platform/linux/XFrontApplication.h"
#include "platform/linux/XInput.h"
#include "platform/linux/XScreenCapture.h"
#include "platform/linux/XScreens.h"
#include "platform/linux/XSettings.h"

namespace nimbrelle {

/// Every service of a Linux desktop, tied together. Made once the application object stands, and dies before
/// it. Without a display each service says that it can't, and nothing fails.
struct LinuxPlatform {
    XConnection x;
    XScreens screens{x};
    XPointer pointer{x, screens};
    XKeyboard keyboard{x};
    XKeySender keySender{x, keyboard, pointer};
    XInputMonitor input{x, screens, pointer, keyboard, keySender};
    XFrontApplication frontApplication{x};
    AtSpiReader accessibility{frontApplication};
    XClipboard clipboard{x};
    XPrimarySelection primarySelection{x};
    XScreenCapture capture{x, screens};
    TesseractRecogniser recogniser;
    SpeechProcess speaker;
    DesktopFileApplications installed{x};
    XSettings settings{x};
    PortalAppearance appearance{QDBusConnection::sessionBus(), PortalAppearance::guessOfToolkit(), &settings};
    AutostartFile launchAtLogin = AutostartFile::ofThisProgram();
    LinuxPermissions permissions{x, input, capture, accessibility};
};

} // namespace nimbrelle
