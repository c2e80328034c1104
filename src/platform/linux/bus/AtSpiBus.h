#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

namespace nimbrelle {

/// Our connection to the accessibility bus, which all share who ask or listen there. A bus that has gone is
/// opened again as soon as the session offers another.
class AtSpiBus final : public QObject {
    Q_OBJECT

public:
    /// Opens it, too.
    AtSpiBus();
    ~AtSpiBus() override;

    enum class State {
        connecting,
        connected,
        closed, ///< it could not be opened, or it has gone
        notInstalled,
    };
    State state() const;

    /// Turns accessibility on for the session and connects to its bus, without waiting for either.
    void open();

    QDBusConnection connection() const { return m_bus; }

    /// Tells programs that such events are wanted; for as long as this connection lasts.
    void wantEvent(const QString &event);

signals:
    void opened(); ///< and nobody listens there yet
    void programLeft(const QString &program);

private slots:
    void handleOwnerChanged(const QString &name, const QString &oldOwner, const QString &newOwner);

private:
    void use(const QString &address);

    QDBusServiceWatcher m_launcher;
    QDBusConnection m_bus;
    QString m_address;
    State m_attempt = State::connecting; ///< what became of the last one
};

} // namespace nimbrelle
