#pragma once

#include "shell/views/StatusPopup.h"

#include <QSystemTrayIcon>

namespace nimbrelle {

/// The status item in a tray of the older kind, which shows a picture and a tool tip and leaves the menu to
/// us.
class TrayIcon final : public StatusItem {
    Q_OBJECT

public:
    explicit TrayIcon(const Theme &theme);

    void show(MenuSource menu) override;
    void setTitle(const QString &) override { } ///< such a tray shows no text
    void setToolTip(const QString &title, const QString &text) override;

    bool isSeen() const override { return QSystemTrayIcon::isSystemTrayAvailable(); }

private:
    void open(QSystemTrayIcon::ActivationReason reason);

    MenuSource m_source;
    StatusPopup m_popup;
    QSystemTrayIcon m_icon;
};

} // namespace nimbrelle
