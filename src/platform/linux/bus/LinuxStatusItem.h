#pragma once

#include "platform/linux/bus/StatusNotifierItem.h"

#include <memory>

namespace nimbrelle {

/// The status item wherever there is a place for it: in a bar of today's kind, else in a tray of the older
/// one for as long as no such bar is there.
class LinuxStatusItem final : public StatusItem {
    Q_OBJECT

public:
    /// What takes more of the framework than this layer has.
    struct Views {
        std::function<std::unique_ptr<StatusItem>()> makeTray; ///< for a tray of the older kind
        /// Opens the menu at a place on the screen, in pixels.
        std::function<void(const QList<MenuEntry> &entries, QPoint at)> popUp;
    };

    LinuxStatusItem(const QDBusConnection &bus, const StatusArt &art, Views views);

    void show(MenuSource menu) override;
    void setTitle(const QString &title) override;
    void setToolTip(const QString &title, const QString &text) override;
    bool isSeen() const override { return m_tray ? m_tray->isSeen() : m_notifier.isSeen(); }

private:
    void follow();

    StatusNotifierItem m_notifier;
    const Views m_views;
    MenuSource m_source;
    QString m_toolTipTitle;
    QString m_toolTipText;
    std::unique_ptr<StatusItem> m_tray;
};

} // namespace nimbrelle
