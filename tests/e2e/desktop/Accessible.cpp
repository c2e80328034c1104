#include "Accessible.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>

#include <algorithm>

namespace nimbrelle {

namespace {

constexpr int patienceMs = 2000;
constexpr unsigned checkedState = 4;
constexpr unsigned focusedState = 12;
constexpr unsigned showingState = 25;
constexpr unsigned onScreen = 0;
const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString textOf = QStringLiteral("org.a11y.atspi.Text");
const QString root = QStringLiteral("/org/a11y/atspi/accessible/root");

QDBusConnection accessibilityBus()
{
    const auto question = QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"),
        QStringLiteral("/org/a11y/bus"), QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    const QDBusMessage answer = QDBusConnection::sessionBus().call(question);
    return QDBusConnection::connectToBus(
        answer.arguments().value(0).toString(), QStringLiteral("accessibility-of-the-tests"));
}

QList<std::pair<QString, QString>> elementsOf(const QVariant &value)
{
    QList<std::pair<QString, QString>> elements;
    if (!value.canConvert<QDBusArgument>())
        return elements;
    const auto argument = value.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString service;
        QDBusObjectPath object;
        argument.beginStructure();
        argument >> service >> object;
        argument.endStructure();
        elements.append({service, object.path()});
    }
    return elements;
}

QList<quint32> numbersOf(const QVariant &value)
{
    QList<quint32> numbers;
    if (value.canConvert<QDBusArgument>())
        value.value<QDBusArgument>() >> numbers;
    return numbers;
}

bool has(const QList<quint32> &states, unsigned state)
{
    return (states.value(state / 32) >> (state % 32) & 1U) != 0;
}

QRect areaOf(const QVariantList &answer)
{
    if (answer.size() == 4)
        return {answer[0].toInt(), answer[1].toInt(), answer[2].toInt(), answer[3].toInt()};
    QRect area;
    if (answer.isEmpty() || !answer[0].canConvert<QDBusArgument>())
        return area;
    const auto argument = answer[0].value<QDBusArgument>();
    int x = 0, y = 0, width = 0, height = 0;
    argument.beginStructure();
    argument >> x >> y >> width >> height;
    argument.endStructure();
    return {x, y, width, height};
}

} // namespace

AccessibleDesktop::AccessibleDesktop() : m_bus(accessibilityBus()) { }

QVariantList AccessibleDesktop::ask(const QString &service, const QString &object, const QString &interface,
    const QString &method, const QVariantList &arguments) const
{
    auto question = QDBusMessage::createMethodCall(service, object, interface, method);
    question.setArguments(arguments);
    const QDBusMessage answer = m_bus.call(question, QDBus::Block, patienceMs);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments() : QVariantList();
}

QVariant AccessibleDesktop::property(
    const QString &service, const QString &object, const QString &interface, const QString &name) const
{
    const QVariant value = ask(service, object, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"), {interface, name})
                               .value(0);
    return value.value<QDBusVariant>().variant();
}

QList<AccessibleDesktop::Element> AccessibleDesktop::childrenOf(const Element &element) const
{
    return elementsOf(ask(element.first, element.second, accessible, QStringLiteral("GetChildren")).value(0));
}

std::optional<AccessibleDesktop::Element> AccessibleDesktop::programOf(qint64 process) const
{
    for (const Element &program : childrenOf({QStringLiteral("org.a11y.atspi.Registry"), root}))
        if (m_bus.interface()->servicePid(program.first).value() == process)
            return program;
    return std::nullopt;
}

bool AccessibleDesktop::isListening(qint64 process) const
{
    const QStringList names = m_bus.interface()->registeredServiceNames().value();
    return std::ranges::any_of(
        names, [&](const QString &name) { return m_bus.interface()->servicePid(name).value() == process; });
}

QList<AccessiblePart> AccessibleDesktop::shownBy(qint64 process) const
{
    QList<AccessiblePart> parts;
    if (const auto program = programOf(process))
        for (const auto &[service, window] : childrenOf(*program))
            collect(service, window, parts);
    return parts;
}

void AccessibleDesktop::collect(
    const QString &service, const QString &object, QList<AccessiblePart> &into) const
{
    const auto states = numbersOf(ask(service, object, accessible, QStringLiteral("GetState")).value(0));
    if (!has(states, showingState))
        return;
    AccessiblePart part{service, object,
        ask(service, object, accessible, QStringLiteral("GetRoleName")).value(0).toString(),
        property(service, object, accessible, QStringLiteral("Name")).toString(), {}, {},
        has(states, checkedState), has(states, focusedState)};
    part.text = ask(service, object, textOf, QStringLiteral("GetText"), {0, -1}).value(0).toString();
    part.area = nimbrelle::areaOf(ask(service, object, QStringLiteral("org.a11y.atspi.Component"),
        QStringLiteral("GetExtents"), {onScreen}));
    into.append(part);
    for (const auto &[owner, child] : childrenOf({service, object}))
        collect(owner, child, into);
}

QRect AccessibleDesktop::areaOf(const AccessiblePart &part, int from, int to) const
{
    return nimbrelle::areaOf(
        ask(part.service, part.object, textOf, QStringLiteral("GetRangeExtents"), {from, to, onScreen}));
}

} // namespace nimbrelle
