#pragma once

#include "platform/Permissions.h"

#include <QList>
#include <QStringList>

#include <functional>

class QUrl;

namespace nimbrelle {

class LaunchAtLogin;

/// One grant as settings show it.
struct PermissionRow {
    Grant grant = Grant::accessibility;
    QString title;
    QString detail; ///< what it is for, and in a line of its own what this session can't give
    bool granted = false;
    QString request; ///< of the button that asks for what is missing; empty where asking is no use
    bool needsRelaunch = false;

    bool operator==(const PermissionRow &) const = default;
};

/// What the user must allow, and the few things that the program asks of the system for itself.
class PermissionModel {
public:
    /// What it asks of the operating system.
    struct System {
        std::function<void(const QString &line)> systemLog;
        std::function<void(const QUrl &url)> openUrl;
        std::function<void(const QString &program, const QStringList &arguments)> startDetached;
        std::function<void()> quit;
    };

    PermissionModel(Permissions &permissions, LaunchAtLogin &launchAtLogin, System system);

    /// As they are now; asks nobody.
    QList<PermissionRow> rows() const;
    void request(Grant grant);

    bool launchAtLogin() const;
    /// A failure goes to the system log; the user sees that the switch stays.
    void setLaunchAtLogin(bool enabled);

    /// Does nothing for a text that is no address.
    void open(const QString &url) const;

    /// Ends this process; a second after it has gone a new one starts.
    void relaunch(const QString &program) const;

private:
    Permissions &m_permissions;
    LaunchAtLogin &m_launchAtLogin;
    System m_system;
};

} // namespace nimbrelle
