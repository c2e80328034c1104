#include "platform/linux/bus/AtSpiBus.h"

#include <QCoro/QCoroSignal>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

constexpr std::chrono::milliseconds gestureLimit{300};

const QString busName = u"nimbrelle-accessibility"_s;
const QString launcherName = u"org.a11y.Bus"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

bool isTimedOut(const QDBusError &error)
{
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout
        || error.type() == QDBusError::TimedOut;
}

} // namespace

AtSpiBus::AtSpiBus()
    : m_launcher(launcherName, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration)
    , m_bus(QString())
{
    connect(&m_launcher, &QDBusServiceWatcher::serviceRegistered, this, &AtSpiBus::open);
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
        m_processes.clear();
        m_address = address;
        m_bus = QDBusConnection::connectToBus(address, busName);
        if (m_bus.isConnected()) {
            connect(m_bus.interface(), &QDBusConnectionInterface::serviceUnregistered, this,
                [this](const QString &program) {
                    m_processes.remove(program);
                    emit programLeft(program);
                });
            emit opened();
        }
    }
    m_attempt = m_bus.isConnected() ? State::connected : State::closed;
}

std::chrono::nanoseconds AtSpiBus::AskingTime::used() const
{
    return earlier + std::chrono::nanoseconds(open > 0 ? since.nsecsElapsed() : 0);
}

void AtSpiBus::AskingTime::begin()
{
    if (open++ == 0)
        since.start();
}

void AtSpiBus::AskingTime::end()
{
    earlier = used();
    since.start();
    --open;
}

void AtSpiBus::beginGesture()
{
    m_time = std::make_shared<AskingTime>();
}

QCoro::Task<QDBusMessage> AtSpiBus::answerTo(QDBusMessage question)
{
    const std::shared_ptr<AskingTime> time = m_time; // a newer gesture has its own
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(gestureLimit - time->used());
    if (!m_bus.isConnected() || left.count() <= 0)
        co_return QDBusMessage();
    // Ours, so that nobody is answered once we are gone.
    auto *answer =
        new QDBusPendingCallWatcher(m_bus.asyncCall(question, static_cast<int>(left.count())), this);
    time->begin();
    co_await qCoro(answer, &QDBusPendingCallWatcher::finished);
    time->end();
    if (isTimedOut(answer->error())) // by a timer that may be early
        time->earlier = std::max<std::chrono::nanoseconds>(time->earlier, gestureLimit);
    answer->deleteLater();
    co_return answer->reply();
}

QCoro::Task<std::optional<QVariantList>> AtSpiBus::ask(
    AccessibleElement element, QString interface, QString method, QVariantList arguments)
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(element.program, element.object, interface, method);
    question.setArguments(arguments);
    const QDBusMessage answer = co_await answerTo(question);
    if (answer.type() == QDBusMessage::ReplyMessage)
        co_return answer.arguments();
    co_return std::nullopt;
}

QCoro::Task<std::optional<QVariant>> AtSpiBus::propertyOf(
    AccessibleElement element, QString interface, QString name)
{
    const QVariantList arguments{interface, name};
    const auto answer = co_await ask(element, propertiesInterface, u"Get"_s, arguments);
    if (!answer)
        co_return std::nullopt;
    co_return answer->value(0).value<QDBusVariant>().variant();
}

QCoro::Task<qint64> AtSpiBus::processOf(QString program)
{
    if (const auto known = m_processes.constFind(program); known != m_processes.constEnd())
        co_return *known;
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
        u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetConnectionUnixProcessID"_s);
    question << program;
    const QDBusMessage answer = co_await answerTo(question);
    const qint64 process = answer.arguments().value(0).toLongLong();
    if (answer.type() == QDBusMessage::ReplyMessage)
        m_processes.insert(program, process);
    co_return process;
}

} // namespace nimbrelle
