#include "platform/linux/LinuxPermissions.h"

#include "platform/InputMonitor.h"
#include "platform/ScreenCapture.h"
#include "platform/linux/AtSpiReader.h"
#include "platform/linux/XInput.h"

namespace nimbrelle {
namespace {

QString missingSession()
{
    if (isWaylandSession())
        return QStringLiteral(
            "当前是 Wayland 会话，程序看不到其他窗口里的鼠标、按键和画面，划词、停留识别和框选都用不了。"
            "请在登录界面选择 X11（Xorg）会话。");
    return QStringLiteral("没有连接到可用的 X11 会话，划词、停留识别和框选都用不了。");
}

} // namespace

GrantState LinuxPermissions::state(Grant grant) const
{
    const bool isGranted = grant == Grant::accessibility ? m_input.canWatch() : m_capture.isAllowed();
    if (!isGranted)
        return {false, missingSession()};
    if (grant == Grant::accessibility && !m_reader.isConnected())
        return {true, QStringLiteral("辅助功能总线没有打开：划词照常可用，但取不到前后文和网页地址。")};
    return {true, {}};
}

void LinuxPermissions::request(Grant grant)
{
    // A capture needs nobody's leave, so there is nothing to ask for.
    if (grant == Grant::accessibility)
        m_reader.connectToBus();
}

} // namespace nimbrelle
