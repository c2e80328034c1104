#include "platform/linux/LinuxPlatform.h"

namespace nimbrelle {

FrontApplication &LinuxPlatform::frontApplication()
{
    return wayland ? static_cast<FrontApplication &>(wayland->frontApplication) : desktop.frontApplication;
}

InputMonitor &LinuxPlatform::input()
{
    return wayland ? static_cast<InputMonitor &>(wayland->input) : desktop.input;
}

ScreenCapture &LinuxPlatform::capture()
{
    return wayland ? static_cast<ScreenCapture &>(wayland->capture) : desktop.capture;
}

Platform LinuxPlatform::platform()
{
    return {
        .input = input(),
        .pointer = wayland ? static_cast<Pointer &>(wayland->pointer) : desktop.pointer,
        .keySender = wayland ? static_cast<KeySender &>(wayland->keySender) : desktop.keySender,
        .frontApplication = frontApplication(),
        .windowAtPointer =
            wayland ? static_cast<WindowAtPointer &>(wayland->windowAtPointer) : desktop.windowAtPointer,
        .lock = lock,
        .accessibility = accessibility,
        .clipboard = desktop.clipboard,
        .primarySelection = wayland ? wayland->primarySelection : desktop.primarySelection,
        .screens = desktop.screens,
        .capture = capture(),
        .recognizer = recognizer,
        .windowSystem = desktop.windowSystem,
        .appearance = appearance,
        .installed = installed,
        .permissions = permissions,
        .launchAtLogin = launchAtLogin,
        .speaker = speaker,
    };
}

} // namespace nimbrelle
