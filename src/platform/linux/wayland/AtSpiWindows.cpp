#include "platform/linux/wayland/AtSpiWindows.h"

#include "platform/linux/ProgramKinds.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace nimbrelle {

using namespace atspi;

namespace {

const QString objectEvents = u"org.a11y.atspi.Event.Object"_s;
const QString windowEvents = u"org.a11y.atspi.Event.Window"_s;

AccessibleElement senderOf(const QDBusMessage &event)
{
    return {.program = event.service(), .object = event.path()};
}

/// Programs may call themselves anything on the bus, so the file that runs has a say too.
QString fileOf(qint64 process)
{
    return process > 0 ? QFileInfo(QFileInfo(u"/proc/%1/exe"_s.arg(process)).symLinkTarget()).fileName()
                       : QString();
}

} // namespace

AtSpiWindows::AtSpiWindows(
    AtSpiBus &bus, std::function<std::optional<Application>()> activeOnX, qint64 ownProcess)
    : m_bus(bus), m_activeOnX(std::move(activeOnX)), m_ownProcess(ownProcess)
{
    connect(&m_bus, &AtSpiBus::opened, this, &AtSpiWindows::listen);
    connect(&m_bus, &AtSpiBus::programLeft, this, &AtSpiWindows::forget);
    if (m_bus.state() == AtSpiBus::State::connected)
        listen();
}

bool AtSpiWindows::isOffered() const
{
    return m_bus.state() == AtSpiBus::State::connected || m_bus.state() == AtSpiBus::State::connecting;
}

void AtSpiWindows::listen()
{
    m_newest.reset();
    QDBusConnection bus = m_bus.connection();
    bus.connect(
        QString(), QString(), windowEvents, u"Activate"_s, this, SLOT(handleActivation(QDBusMessage)));
    bus.connect(
        QString(), QString(), windowEvents, u"Deactivate"_s, this, SLOT(handleDeactivation(QDBusMessage)));
    bus.connect(QString(), QString(), objectEvents, u"StateChanged"_s, {u"active"_s}, QString(), this,
        SLOT(handleStateChanged(QDBusMessage)));
    for (const QString &event :
        {u"window:activate"_s, u"window:deactivate"_s, u"object:state-changed:active"_s})
        m_bus.wantEvent(event);
    refresh();
}

void AtSpiWindows::handleActivation(const QDBusMessage &event)
{
    m_newest = senderOf(event);
    refresh();
}

void AtSpiWindows::handleDeactivation(const QDBusMessage &event)
{
    if (m_newest == senderOf(event))
        m_newest.reset();
    refresh();
}

void AtSpiWindows::handleStateChanged(const QDBusMessage &event)
{
    if (event.arguments().value(1).toInt() == 1)
        handleActivation(event);
    else
        handleDeactivation(event);
}

void AtSpiWindows::forget(const QString &program)
{
    if (!m_newest || m_newest->program != program)
        return;
    m_newest.reset();
    refresh();
}

QCoro::Task<> AtSpiWindows::refresh()
{
    const quint64 round = ++m_asked;
    m_questions.beginGesture();
    const std::optional<SessionWindow> window = co_await findActive();
    if (round < m_answered) // a later question has been answered before
        co_return;
    m_answered = round;
    set(window);
}

void AtSpiWindows::set(const std::optional<SessionWindow> &window)
{
    const auto idOf = [](const SessionWindow &each) { return each.application.window; };
    const quint64 before = m_windows.isEmpty() ? 0 : idOf(m_windows.first());
    m_windows.clear();
    if (window)
        m_windows.append(*window);
    if ((window ? idOf(*window) : 0) != before)
        emit activeChanged();
}

QCoro::Task<std::optional<SessionWindow>> AtSpiWindows::findActive()
{
    if (const std::optional<Application> onX = m_activeOnX())
        co_return SessionWindow{.application = *onX,
            .area = {},
            .isActive = true,
            .isOwn = onX->bundleID == ownProgram().bundleID};
    const std::optional<AccessibleElement> element = co_await findActiveElement();
    if (!element)
        co_return std::nullopt;
    std::optional<SessionWindow> window = co_await windowOf(*element);
    co_return window;
}

// Where more than one says so, the one that has become active last is right.
QCoro::Task<std::optional<AccessibleElement>> AtSpiWindows::findActiveElement()
{
    if (const std::optional<AccessibleElement> newest = m_newest) {
        const Answer states = co_await m_questions.ask(*newest, accessibleInterface, u"GetState"_s);
        if (hasState(states, activeState))
            co_return newest;
    }
    std::vector<QCoro::Task<std::optional<AccessibleElement>>> asked;
    const QStringList programs = co_await m_questions.programs();
    for (const QString &program : programs)
        asked.push_back(m_questions.activeWindowOf(program));
    std::optional<AccessibleElement> active;
    for (auto &each : asked) {
        const std::optional<AccessibleElement> window = co_await each;
        if (window && !active)
            active = window;
    }
    co_return active;
}

QCoro::Task<std::optional<SessionWindow>> AtSpiWindows::windowOf(AccessibleElement element)
{
    const AccessibleElement program{.program = element.program, .object = rootPath};
    auto askedProcess = m_questions.processOf(element.program);
    auto askedName = m_questions.propertyOf(program, accessibleInterface, u"Name"_s);
    auto askedTitle = m_questions.propertyOf(element, accessibleInterface, u"Name"_s);
    const qint64 process = co_await askedProcess;
    const std::optional<QVariant> name = co_await askedName;
    const std::optional<QVariant> title = co_await askedTitle;
    const bool isOwn = process == m_ownProcess;
    const WindowClass windowClass{.instance = fileOf(process), .name = name.value_or(QVariant()).toString()};
    if (!isOwn && windowClass.name.isEmpty() && windowClass.instance.isEmpty())
        co_return std::nullopt;
    SessionWindow window{.application = isOwn ? ownProgram() : programOf(windowClass, m_names),
        .area = {},
        .isActive = true,
        .isOwn = isOwn};
    if (title)
        window.application.windowTitle = title->toString();
    window.application.process = process;
    window.application.window = qHash(element.program + element.object);
    co_return window;
}

} // namespace nimbrelle
