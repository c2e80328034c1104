#pragma once

#include "platform/Platform.h"
#include "platform/linux/LinuxPermissions.h"
#include "platform/linux/bus/AtSpiReader.h"
#include "platform/linux/bus/BusSessionLock.h"
#include "platform/linux/bus/PortalAppearance.h"
#include "platform/linux/files/AutostartFile.h"
#include "platform/linux/files/DesktopFileApplications.h"
#include "platform/linux/ocr/TesseractRecognizer.h"
#include "platform/linux/speech/SpeechProcess.h"
#include "platform/linux/wayland/WaylandDesktop.h"
#include "platform/linux/x11/X11Desktop.h"

namespace nimbrelle {

/// Every service of a Linux desktop, tied together. Made once the application object stands, and dies before
/// it.
class LinuxPlatform {
public:
    X11Desktop desktop;
    AtSpiBus accessibilityBus;
    /// Absent in an X11 session.
    std::unique_ptr<WaylandDesktop> wayland =
        WaylandDesktop::isHere() ? std::make_unique<WaylandDesktop>(desktop, accessibilityBus) : nullptr;
    AtSpiReader accessibility{accessibilityBus, frontApplication()};
    BusSessionLock lock{QDBusConnection::sessionBus(), QDBusConnection::systemBus()};
    TesseractRecognizer recognizer;
    SpeechProcess speaker;
    DesktopFileApplications installed{[this] { return desktop.frontApplication.openWindows(); }};
    PortalAppearance appearance{
        QDBusConnection::sessionBus(), PortalAppearance::guessOfToolkit(), &desktop.settings};
    AutostartFile launchAtLogin = AutostartFile::ofThisProgram();
    LinuxPermissions permissions{desktop.x, input(), capture(), accessibility};

    Platform platform();

private:
    FrontApplication &frontApplication();
    InputMonitor &input();
    ScreenCapture &capture();
};

} // namespace nimbrelle
