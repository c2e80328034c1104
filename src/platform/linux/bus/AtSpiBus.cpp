#include "platform/linux/bus/AtSpiBus.h"

#include "platform/linux/bus/AtSpiElements.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

const QString busName = u"nimbrelle-accessibility"_s;
const QString launcherName = u"org.a11y.Bus"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

} // namespace

AtSpiBus::AtSpiBus()
    : m_launcher(launcherName, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration)
    , m_bus(QString())
{
    connect(&m_launcher, &QDBusServiceWatcher::serviceRegistered, this, &AtSpiBus::open);
    open();
}

AtSpiBus::~AtSpiBus()
{
    QDBusConnection::disconnectFromBus(busName);
}

AtSpiBus::State AtSpiBus::state() const
{
    if (m_bus.isConnected())
        return State::connected;
    return m_attempt == State::connected ? State::closed : m_attempt;
}

void AtSpiBus::open()
{
    m_attempt = State::connecting;
    const QDBusConnection session = QDBusConnection::sessionBus();
    const QString path = u"/org/a11y/bus"_s;
    // Some toolkits offer nothing until somebody says that it is wanted.
    QDBusMessage enable = QDBusMessage::createMethodCall(launcherName, path, propertiesInterface, u"Set"_s);
    enable << u"org.a11y.Status"_s << u"IsEnabled"_s << QVariant::fromValue(QDBusVariant(true));
    session.asyncCall(enable);
    auto *answer = new QDBusPendingCallWatcher(
        session.asyncCall(QDBusMessage::createMethodCall(launcherName, path, launcherName, u"GetAddress"_s)),
        this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QString> address = *answer;
        if (address.isValid())
            use(address.value());
        else
            m_attempt =
                address.error().type() == QDBusError::ServiceUnknown ? State::notInstalled : State::closed;
        answer->deleteLater();
    });
}

void AtSpiBus::use(const QString &address)
{
    if (!m_bus.isConnected() || address != m_address) {
        QDBusConnection::disconnectFromBus(busName); // a name goes on to stand for a bus that has gone
        m_address = address;
        m_bus = QDBusConnection::connectToBus(address, busName);
        if (m_bus.isConnected()) {
            m_bus.connect(u"org.freedesktop.DBus"_s, QString(), u"org.freedesktop.DBus"_s,
                u"NameOwnerChanged"_s, this, SLOT(handleOwnerChanged(QString, QString, QString)));
            emit opened();
        }
    }
    m_attempt = m_bus.isConnected() ? State::connected : State::closed;
}

void AtSpiBus::handleOwnerChanged(const QString &name, const QString &, const QString &newOwner)
{
    if (newOwner.isEmpty())
        emit programLeft(name);
}

void AtSpiBus::wantEvent(const QString &event)
{
    QDBusMessage request = QDBusMessage::createMethodCall(
        atspi::registryService, u"/org/a11y/atspi/registry"_s, atspi::registryService, u"RegisterEvent"_s);
    request << event;
    m_bus.asyncCall(request);
}

} // namespace nimbrelle
