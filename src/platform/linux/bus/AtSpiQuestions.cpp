#include "platform/linux/bus/AtSpiQuestions.h"

#include "platform/linux/bus/AtSpiBus.h"

#include <QCoro/QCoroSignal>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {

using namespace atspi;

namespace {

constexpr std::chrono::milliseconds gestureLimit{300};

const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

bool isTimedOut(const QDBusError &error)
{
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::Timeout
        || error.type() == QDBusError::TimedOut;
}

} // namespace

AtSpiQuestions::AtSpiQuestions(AtSpiBus &bus) : m_bus(bus)
{
    connect(&bus, &AtSpiBus::opened, this, [this] { m_processes.clear(); });
    connect(
        &bus, &AtSpiBus::programLeft, this, [this](const QString &program) { m_processes.remove(program); });
}

std::chrono::nanoseconds AtSpiQuestions::AskingTime::used() const
{
    return earlier + std::chrono::nanoseconds(open > 0 ? since.nsecsElapsed() : 0);
}

void AtSpiQuestions::AskingTime::begin()
{
    if (open++ == 0)
        since.start();
}

void AtSpiQuestions::AskingTime::end()
{
    earlier = used();
    since.start();
    --open;
}

void AtSpiQuestions::beginGesture()
{
    m_time = std::make_shared<AskingTime>();
}

QCoro::Task<QDBusMessage> AtSpiQuestions::answerTo(QDBusMessage question)
{
    const std::shared_ptr<AskingTime> time = m_time; // a newer gesture has its own
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(gestureLimit - time->used());
    if (!m_bus.connection().isConnected() || left.count() <= 0)
        co_return QDBusMessage();
    // Ours, so that nobody is answered once we are gone.
    auto *answer = new QDBusPendingCallWatcher(
        m_bus.connection().asyncCall(question, static_cast<int>(left.count())), this);
    time->begin();
    co_await qCoro(answer, &QDBusPendingCallWatcher::finished);
    time->end();
    if (isTimedOut(answer->error())) // by a timer that may be early
        time->earlier = std::max<std::chrono::nanoseconds>(time->earlier, gestureLimit);
    answer->deleteLater();
    co_return answer->reply();
}

QCoro::Task<std::optional<QVariantList>> AtSpiQuestions::ask(
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

QCoro::Task<QList<Answer>> AtSpiQuestions::askAll(Elements elements, QString method)
{
    std::vector<QCoro::Task<Answer>> asked;
    for (const AccessibleElement &each : elements)
        asked.push_back(ask(each, accessibleInterface, method));
    QList<Answer> answers;
    for (QCoro::Task<Answer> &each : asked) {
        Answer answer = co_await each;
        answers.append(std::move(answer));
    }
    co_return answers;
}

QCoro::Task<std::optional<QVariant>> AtSpiQuestions::propertyOf(
    AccessibleElement element, QString interface, QString name)
{
    const QVariantList arguments{interface, name};
    const auto answer = co_await ask(element, propertiesInterface, u"Get"_s, arguments);
    if (!answer)
        co_return std::nullopt;
    co_return answer->value(0).value<QDBusVariant>().variant();
}

void AtSpiQuestions::askInPassing(
    const AccessibleElement &element, const QString &interface, const QString &method)
{
    m_bus.connection().asyncCall(
        QDBusMessage::createMethodCall(element.program, element.object, interface, method));
}

QCoro::Task<qint64> AtSpiQuestions::processOf(QString program)
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

QCoro::Task<QStringList> AtSpiQuestions::programs()
{
    const AccessibleElement registry{.program = registryService, .object = rootPath};
    const Answer registered = co_await ask(registry, accessibleInterface, u"GetChildren"_s);
    QStringList programs;
    for (const AccessibleElement &each : elementsOf(registered))
        programs.append(each.program);
    co_return programs;
}

QCoro::Task<std::optional<AccessibleElement>> AtSpiQuestions::activeWindowOf(QString program)
{
    const AccessibleElement root{.program = program, .object = rootPath};
    const Answer children = co_await ask(root, accessibleInterface, u"GetChildren"_s);
    const Elements windows = elementsOf(children);
    const QList<Answer> states = co_await askAll(windows, u"GetState"_s);
    for (qsizetype i = 0; i < windows.size(); ++i)
        if (hasState(states[i], activeState))
            co_return windows[i];
    co_return std::nullopt;
}

} // namespace nimbrelle
