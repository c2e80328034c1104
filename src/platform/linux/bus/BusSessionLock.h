#pragma once

#include "platform/SessionLock.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QSet>

namespace nimbrelle {

/// What the desktop's locker tells the session's bus, whichever it is, and the login manager that of the
/// system. A plain locker that tells nobody grabs the pointer, which is seen elsewhere.
class BusSessionLock final : public SessionLock {
    Q_OBJECT

public:
    BusSessionLock(QDBusConnection session, QDBusConnection system);

    bool isLocked() const override { return !m_lockedBy.isEmpty(); }

private slots:
    void takeActive(const QDBusMessage &message);
    void takeProperties(const QString &interface, const QVariantMap &changes);

private:
    void watchLogin(QDBusConnection system);
    void note(const QString &who, bool isLocked);

    QSet<QString> m_lockedBy; // who told so; one that leaves the bus has nothing to say any more
    QDBusServiceWatcher m_lockers;
};

} // namespace nimbrelle
