#pragma once

#include "platform/linux/files/DesktopEntry.h"
#include "platform/linux/wayland/KWinScript.h"
#include "platform/linux/wayland/SessionWindows.h"

#include <QDBusContext>
#include <QDBusServiceWatcher>

class QJsonObject;

namespace nimbrelle {

/// The windows as KWin tells them, by a script that sends them to us after each change.
class KWinWindows final : public SessionWindows, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "nimbrelle.Windows")

public:
    struct Conversions {
        std::function<QPoint(QPointF)> toPixel; ///< from KWin's pixels to those of the X server
        /// The program of a window on the X server, whose names KWin gives in small letters only.
        std::function<Application(quint32)> programOnX;
    };

    /// `bus` is the session's, which KWin may join or leave at any time.
    KWinWindows(const QDBusConnection &bus, Conversions conversions);
    ~KWinWindows() override;

    bool isOffered() const override { return !m_owner.isEmpty(); }
    bool isTold() const override { return m_isTold; }
    const QList<SessionWindow> &all() const override { return m_windows; }
    QCoro::Task<> refresh() override;
    void activate(const Application &application) override;

public slots:
    /// Called by the script: a JSON array, from the lowest to the topmost.
    Q_SCRIPTABLE void take(const QString &windows);

signals:
    void told();

private:
    void follow(const QString &owner);
    QCoro::Task<> load();
    SessionWindow windowOf(const QJsonObject &told) const;
    const SessionWindow *known(quint64 number) const;
    void replaceAll(const QList<SessionWindow> &windows);

    QDBusConnection m_bus;
    const Conversions m_conversions;
    QDBusServiceWatcher m_watcher;
    QString m_owner; // KWin's unique name; empty while it is not on the bus
    KWinScript m_script;
    KWinScript m_activation;
    mutable ProgramNames m_names;
    QList<SessionWindow> m_windows;
    bool m_isTold = false;
};

} // namespace nimbrelle
