#pragma once

#include "platform/LaunchAtLogin.h"

#include <QStringList>

namespace nimbrelle {

/// An entry in the session's autostart folder.
class AutostartFile final : public LaunchAtLogin {
public:
    /// `folder` such as "~/.config/autostart"; `command` is the program to start and its arguments.
    AutostartFile(QString folder, QStringList command);

    /// The user's own folder and this very program.
    static AutostartFile ofThisProgram();

    bool isEnabled() const override;
    std::optional<QString> setEnabled(bool enabled) override;

private:
    QString path() const;

    QString m_folder;
    QStringList m_command;
};

} // namespace nimbrelle
