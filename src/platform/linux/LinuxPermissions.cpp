#include "platform/linux/LinuxPermissions.h"

#include "platform/InputMonitor.h"
#include "platform/ScreenCapture.h"
#include "platform/linux/bus/AtSpiReader.h"
#include "platform/linux/x11/XConnection.h"
#include "platform/linux/x11/XInput.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

const QString whatWaylandLacks =
    u"当前是 Wayland 会话：划词可以用；停留识别、按住按键查词和双击按键框选只有 X11 会话里才有。"_s;

} // namespace

GrantState LinuxPermissions::state(Grant grant) const
{
    const bool isGranted = grant == Grant::accessibility ? m_input.canWatch() : m_capture.isAllowed();
    if (!isGranted)
        return missing();
    GrantState state = grant == Grant::accessibility ? withoutAccessibilityBus() : GrantState{true, {}};
    if (grant == Grant::accessibility && !m_input.hearsPresses())
        state.note = whatWaylandLacks + state.note;
    return state;
}

// X11 has nobody to ask. A new start helps only where our own connection broke.
GrantState LinuxPermissions::missing() const
{
    if (isWaylandSession())
        return {false,
            u"当前是 Wayland 会话，程序看不到其他窗口里的鼠标、按键和画面，划词、停留识别和框选都用不了。"
            "请在登录界面选择 X11（Xorg）会话。"_s};
    const bool isLost = !m_x.isOpen() && !qEnvironmentVariableIsEmpty("DISPLAY");
    return {.granted = false,
        .note = u"没有连接到可用的 X11 会话，划词、停留识别和框选都用不了。"_s,
        .needsRelaunch = isLost};
}

GrantState LinuxPermissions::withoutAccessibilityBus() const
{
    using Bus = AtSpiReader::Bus;
    QString note = u"辅助功能总线没有打开：划词照常可用，但取不到前后文和网页地址。"_s;
    switch (m_reader.bus()) {
    case Bus::connecting:
    case Bus::connected:
        return {true, {}};
    case Bus::closed:
        break;
    case Bus::notInstalled:
        note += u"系统里没有软件包 at-spi2-core，装好以后才能打开。"_s;
        break;
    }
    return {.granted = true, .note = note, .canRequest = true};
}

void LinuxPermissions::request(Grant grant)
{
    // A capture needs nobody's leave, so there is nothing to ask for.
    if (grant == Grant::accessibility)
        m_reader.connectToBus();
}

} // namespace nimbrelle
