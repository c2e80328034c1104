#include "platform/linux/LinuxPlatform.h"

namespace nimbrelle {

Platform LinuxPlatform::platform()
{
    return {
        .input = desktop.input,
        .pointer = desktop.pointer,
        .keySender = desktop.keySender,
        .frontApplication = desktop.frontApplication,
        .windowAtPointer = desktop.windowAtPointer,
        .lock = lock,
        .accessibility = accessibility,
        .clipboard = desktop.clipboard,
        .primarySelection = desktop.primarySelection,
        .screens = desktop.screens,
        .capture = desktop.capture,
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
