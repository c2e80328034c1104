#include "Accessible.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr int patienceMs = 2000;
constexpr unsigned activeState = 1;
constexpr unsigned checkedState = 4;
constexpr unsigned focusedState = 12;
constexpr unsigned showingState = 25;
constexpr unsigned onScreen = 0;
const QString accessible = u"org.a11y.atspi.Accessible"_s;
const QString textOf = u"org.a11y.atspi.Text"_s;
const QString root = u"/org/a11y/atspi/accessible/root"_s;

QDBusConnection accessibilityBus()
{
    const auto question = QDBusMessage::createMethodCall(
        u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
    const QDBusMessage answer = QDBusConnection::sessionBus().call(question);
    return QDBusConnection::connectToBus(
        answer.arguments().value(0).toString(), u"accessibility-of-the-tests"_s);
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

QList<AccessibleDesktop::Element> AccessibleDesktop::childrenOf(const Element &element) const
{
    return elementsOf(ask(element.first, element.second, accessible, u"GetChildren"_s).value(0));
}

std::optional<AccessibleDesktop::Element> AccessibleDesktop::programOf(qint64 process) const
{
    for (const Element &program : childrenOf({u"org.a11y.atspi.Registry"_s, root}))
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
    // All asked before any answer is waited for, since a window has hundreds of parts.
    const auto asked = [&](const QString &interface, const QString &method,
                           const QVariantList &arguments = {}) {
        auto question = QDBusMessage::createMethodCall(service, object, interface, method);
        question.setArguments(arguments);
        return m_bus.asyncCall(question, patienceMs);
    };
    const auto answer = [](QDBusPendingCall call) {
        call.waitForFinished();
        return call.isError() ? QVariant() : call.reply().arguments().value(0);
    };
    const auto states = asked(accessible, u"GetState"_s);
    const auto role = asked(accessible, u"GetRoleName"_s);
    const auto name = asked(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {accessible, u"Name"_s});
    const auto text = asked(textOf, u"GetText"_s, {0, -1});
    auto area = asked(u"org.a11y.atspi.Component"_s, u"GetExtents"_s, {onScreen});
    const auto children = asked(accessible, u"GetChildren"_s);
    const auto numbers = numbersOf(answer(states));
    if (!has(numbers, showingState))
        return;
    area.waitForFinished();
    into.append(
        {service, object, answer(role).toString(), answer(name).value<QDBusVariant>().variant().toString(),
            answer(text).toString(), nimbrelle::areaOf(area.reply().arguments()), has(numbers, checkedState),
            has(numbers, focusedState), has(numbers, activeState)});
    for (const auto &[owner, child] : elementsOf(answer(children)))
        collect(owner, child, into);
}

QRect AccessibleDesktop::areaOf(const AccessiblePart &part, int from, int to) const
{
    return nimbrelle::areaOf(
        ask(part.service, part.object, textOf, u"GetRangeExtents"_s, {from, to, onScreen}));
}

} // namespace nimbrelle
