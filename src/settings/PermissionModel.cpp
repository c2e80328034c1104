#include "settings/PermissionModel.h"

#include "platform/LaunchAtLogin.h"

#include <QCoreApplication>
#include <QUrl>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

PermissionRow makeRow(Grant grant, const QString &title, const QString &purpose, const GrantState &state)
{
    const QString detail = state.note.isEmpty() ? purpose : purpose + u'\n' + state.note;
    const QString request = state.granted ? u"现在打开"_s : u"去开启"_s;
    return {.grant = grant,
        .title = title,
        .detail = detail,
        .granted = state.granted,
        .request = state.canRequest ? request : QString(),
        .needsRelaunch = state.needsRelaunch};
}

} // namespace

PermissionModel::PermissionModel(Permissions &permissions, LaunchAtLogin &launchAtLogin, System system)
    : m_permissions(permissions), m_launchAtLogin(launchAtLogin), m_system(std::move(system))
{
}

QList<PermissionRow> PermissionModel::rows() const
{
    return {
        makeRow(Grant::accessibility, u"辅助功能"_s, u"用来读取你选中的文字、知道你按了哪个键。"_s,
            m_permissions.state(Grant::accessibility)),
        makeRow(Grant::screenCapture, u"屏幕录制"_s,
            u"用来识别图片、视频里选不中的文字。只截鼠标周围一小块，不会保存。"_s,
            m_permissions.state(Grant::screenCapture)),
    };
}

void PermissionModel::request(Grant grant)
{
    m_permissions.request(grant);
}

bool PermissionModel::launchAtLogin() const
{
    return m_launchAtLogin.isEnabled();
}

void PermissionModel::setLaunchAtLogin(bool enabled)
{
    if (const auto failure = m_launchAtLogin.setEnabled(enabled))
        m_system.systemLog(u"Nimbrelle: 设置开机启动失败 "_s + *failure);
}

void PermissionModel::open(const QString &url) const
{
    const QUrl address(url, QUrl::StrictMode);
    if (address.isValid() && !address.scheme().isEmpty())
        m_system.openUrl(address);
}

void PermissionModel::relaunch(const QString &program) const
{
    // As long as this process works on the data, a new one would give way to it. The path is an argument and
    // no part of the command, so that no character of it means anything.
    const auto command = u"left=600; "
                         "while [ $left -gt 0 ] && kill -0 \"$1\" 2>/dev/null; "
                         "do sleep 0.1; left=$((left - 1)); done; sleep 1; exec \"$0\""_s;
    m_system.startDetached(
        u"/bin/sh"_s, {u"-c"_s, command, program, QString::number(QCoreApplication::applicationPid())});
    m_system.quit();
}

} // namespace nimbrelle
