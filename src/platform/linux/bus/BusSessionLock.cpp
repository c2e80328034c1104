#include "platform/linux/bus/BusSessionLock.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

const QStringList lockers{u"org.freedesktop.ScreenSaver"_s, u"org.gnome.ScreenSaver"_s,
    u"org.cinnamon.ScreenSaver"_s, u"org.mate.ScreenSaver"_s, u"org.xfce.ScreenSaver"_s};
const QString login = u"org.freedesktop.login1"_s;
const QString loginSession = u"org.freedesktop.login1.Session"_s;

} // namespace

BusSessionLock::BusSessionLock(QDBusConnection session, QDBusConnection system)
{
    if (session.isConnected()) {
        m_lockers.setConnection(session);
        m_lockers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
        connect(&m_lockers, &QDBusServiceWatcher::serviceUnregistered, this,
            [this](const QString &locker) { note(locker, false); });
        for (const QString &locker : lockers)
            session.connect(
                QString(), QString(), locker, u"ActiveChanged"_s, this, SLOT(takeActive(QDBusMessage)));
    }
    if (system.isConnected())
        watchLogin(std::move(system));
}

void BusSessionLock::watchLogin(QDBusConnection system)
{
    const QString session = qEnvironmentVariable("XDG_SESSION_ID");
    if (session.isEmpty())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        login, u"/org/freedesktop/login1"_s, u"org.freedesktop.login1.Manager"_s, u"GetSession"_s);
    call << session;
    auto *answer = new QDBusPendingCallWatcher(system.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, system]() mutable {
        answer->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> path = *answer;
        if (path.isValid())
            system.connect(login, path.value().path(), u"org.freedesktop.DBus.Properties"_s,
                u"PropertiesChanged"_s, this, SLOT(takeProperties(QString, QVariantMap)));
    });
}

void BusSessionLock::takeActive(const QDBusMessage &message)
{
    const QVariant isActive = message.arguments().value(0);
    if (isActive.typeId() != QMetaType::Bool)
        return;
    m_lockers.addWatchedService(message.service());
    note(message.service(), isActive.toBool());
}

void BusSessionLock::takeProperties(const QString &interface, const QVariantMap &changes)
{
    const QVariant isLocked = changes.value(u"LockedHint"_s);
    if (interface == loginSession && isLocked.isValid())
        note(login, isLocked.toBool());
}

void BusSessionLock::note(const QString &who, bool isLocked)
{
    const bool before = this->isLocked();
    if (isLocked)
        m_lockedBy.insert(who);
    else
        m_lockedBy.remove(who);
    if (this->isLocked() != before)
        emit changed();
}

} // namespace nimbrelle
