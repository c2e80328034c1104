#pragma once

#include "platform/StatusItem.h"
#include "platform/linux/bus/DBusMenu.h"
#include "platform/linux/bus/NotifierObject.h"

#include <QDBusConnection>

class QDBusPendingCallWatcher;

namespace nimbrelle {

/// What a status item looks like.
struct StatusArt {
    QString iconName; ///< one that the icon theme surely holds, and that bars can colour; or empty
    QList<QImage> icons; ///< one picture in several sizes, for bars that can't
    DBusMenu::SymbolPainter symbol;
};

/// The status item as desktops of today know it: we offer it on the session bus, and the bar reads and draws
/// it. It follows a bar that comes late, goes, or comes back. Without a session bus it stays unseen.
class StatusNotifierItem final : public StatusItem {
    Q_OBJECT

public:
    enum class Hosting {
        unknown, ///< the bus has not answered yet
        absent, ///< no bar shows it
        present,
    };

    /// The icon that an installation brings; empty where there is none.
    static QString installedIcon();

    /// `bus` is the session's.
    StatusNotifierItem(const QDBusConnection &bus, const StatusArt &art);
    ~StatusNotifierItem() override;

    void show(MenuSource menu) override;
    void setTitle(const QString &title) override;
    void setToolTip(const QString &title, const QString &text) override;

    bool isSeen() const override { return m_hosting != Hosting::absent; }
    Hosting hosting() const { return m_hosting; }

signals:
    void hostingChanged();
    /// The bar doesn't draw the menu: it is to be shown by us, at that place in pixels of the screen.
    void menuRequested(QPoint at);

private slots:
    void askForHost();

private:
    void registerItem();
    void registered(QDBusPendingCallWatcher *answer);
    void setHosting(Hosting hosting);

    QDBusConnection m_bus;
    DBusMenu m_menu;
    NotifierObject m_object;
    Hosting m_hosting = Hosting::unknown;
    bool m_isShown = false;
};

} // namespace nimbrelle
