#include "platform/linux/bus/AtSpiReader.h"

#include "platform/FrontApplication.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDeadlineTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

constexpr int answerLimitMs = 300;
constexpr quint32 documentWebRole = 95;
constexpr quint32 activeState = 1;
constexpr quint32 focusedState = 12;
constexpr quint32 showingState = 25;
constexpr std::chrono::milliseconds searchLimit{100};
/// Longer texts than anybody looks up are not fetched whole.
constexpr int longestSelection = 20000;

const QString busName = u"nimbrelle-accessibility"_s;
const QString registryService = u"org.a11y.atspi.Registry"_s;
const QString rootPath = u"/org/a11y/atspi/accessible/root"_s;
const QString nullPath = u"/org/a11y/atspi/null"_s;
const QString accessibleInterface = u"org.a11y.atspi.Accessible"_s;
const QString textInterface = u"org.a11y.atspi.Text"_s;
const QString documentInterface = u"org.a11y.atspi.Document"_s;
const QString collectionInterface = u"org.a11y.atspi.Collection"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;
const QString objectEvents = u"org.a11y.atspi.Event.Object"_s;

/// D-Bus structs (so) name an element.
std::optional<AccessibleElement> elementOf(const QDBusArgument &argument)
{
    if (argument.currentType() != QDBusArgument::StructureType)
        return std::nullopt;
    QString program;
    QDBusObjectPath object;
    argument.beginStructure();
    argument >> program >> object;
    argument.endStructure();
    if (program.isEmpty() || object.path() == nullPath)
        return std::nullopt;
    return AccessibleElement{program, object.path()};
}

QList<AccessibleElement> elementsOf(const QDBusArgument &argument)
{
    QList<AccessibleElement> elements;
    if (argument.currentType() != QDBusArgument::ArrayType)
        return elements;
    argument.beginArray();
    while (!argument.atEnd())
        if (const auto element = elementOf(argument))
            elements.append(*element);
    argument.endArray();
    return elements;
}

QList<AccessibleElement> elementsOf(const std::optional<QVariantList> &answer)
{
    if (!answer || !answer->value(0).canConvert<QDBusArgument>())
        return {};
    return elementsOf(answer->value(0).value<QDBusArgument>());
}

bool hasState(const QVariant &states, quint32 state)
{
    const auto words = qdbus_cast<QList<quint32>>(states);
    return words.value(state / 32) & (1U << (state % 32));
}

/// A surrogate pair that was cut in two comes over the bus as a replacement character.
QString withoutHalfAtStart(const QString &text)
{
    return text.startsWith(QChar::ReplacementCharacter) ? text.sliced(1) : text;
}

QString withoutHalfAtEnd(const QString &text)
{
    return text.endsWith(QChar::ReplacementCharacter) ? text.chopped(1) : text;
}

} // namespace

AtSpiReader::AtSpiReader(const FrontApplication &front) : m_front(front), m_bus(QString())
{
    connectToBus();
}

AtSpiReader::~AtSpiReader()
{
    QDBusConnection::disconnectFromBus(busName);
}

AtSpiReader::Bus AtSpiReader::bus() const
{
    if (m_bus.isConnected())
        return Bus::connected;
    return m_attempt == Bus::connected ? Bus::closed : m_attempt;
}

void AtSpiReader::connectToBus()
{
    if (m_bus.isConnected())
        return;
    m_attempt = Bus::connecting;
    const QDBusConnection session = QDBusConnection::sessionBus();
    const QString launcher = u"org.a11y.Bus"_s;
    const QString path = u"/org/a11y/bus"_s;
    // Some toolkits offer nothing until somebody says that it is wanted.
    QDBusMessage enable = QDBusMessage::createMethodCall(launcher, path, propertiesInterface, u"Set"_s);
    enable << u"org.a11y.Status"_s << u"IsEnabled"_s << QVariant::fromValue(QDBusVariant(true));
    session.asyncCall(enable);
    auto *answer = new QDBusPendingCallWatcher(
        session.asyncCall(QDBusMessage::createMethodCall(launcher, path, launcher, u"GetAddress"_s)), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QString> busAddress = *answer;
        if (busAddress.isValid())
            useBus(busAddress.value());
        else
            m_attempt =
                busAddress.error().type() == QDBusError::ServiceUnknown ? Bus::notInstalled : Bus::closed;
        answer->deleteLater();
    });
}

void AtSpiReader::useBus(const QString &busAddress)
{
    if (m_bus.isConnected())
        return;
    QDBusConnection::disconnectFromBus(busName); // a name goes on to stand for a bus that has gone
    m_places.clear();
    m_processes.clear();
    m_bus = QDBusConnection::connectToBus(busAddress, busName);
    m_attempt = m_bus.isConnected() ? Bus::connected : Bus::closed;
    if (!m_bus.isConnected())
        return;
    m_bus.connect(
        QString(), QString(), objectEvents, u"StateChanged"_s, this, SLOT(handleStateChanged(QDBusMessage)));
    m_bus.connect(QString(), QString(), objectEvents, u"TextSelectionChanged"_s, this,
        SLOT(handleSelectionChanged(QDBusMessage)));
    connect(m_bus.interface(), &QDBusConnectionInterface::serviceUnregistered, this, &AtSpiReader::forget);
    registerEvent(u"object:state-changed:focused"_s);
    registerEvent(u"object:text-selection-changed"_s);
}

void AtSpiReader::registerEvent(const QString &event)
{
    QDBusMessage request = QDBusMessage::createMethodCall(
        registryService, u"/org/a11y/atspi/registry"_s, registryService, u"RegisterEvent"_s);
    request << event;
    m_bus.asyncCall(request);
}

void AtSpiReader::handleStateChanged(const QDBusMessage &event)
{
    const QVariantList what = event.arguments();
    if (what.value(0).toString() == u"focused" && what.value(1).toInt() == 1)
        remember(event);
}

void AtSpiReader::handleSelectionChanged(const QDBusMessage &event)
{
    remember(event);
}

void AtSpiReader::remember(const QDBusMessage &event)
{
    if (event.service() != m_bus.baseService())
        m_places.insert(event.service(), {event.path(), ++m_order});
}

void AtSpiReader::forget(const QString &program)
{
    m_places.remove(program);
    m_processes.remove(program);
}

std::optional<AccessibleElement> AtSpiReader::focusedElement()
{
    if (!m_bus.isConnected())
        return std::nullopt;
    const std::optional<Application> front = m_front.current();
    if (!front)
        return std::nullopt;
    std::optional<AccessibleElement> newest;
    quint64 order = 0;
    for (auto place = m_places.cbegin(); place != m_places.cend(); ++place) {
        if (place->order <= order || (front->process != 0 && processOf(place.key()) != front->process))
            continue;
        newest = AccessibleElement{place.key(), place->object};
        order = place->order;
    }
    return newest || front->process == 0 ? newest : searchFocus(front->process);
}

/// The bus itself answers this, even for a program that hangs.
qint64 AtSpiReader::processOf(const QString &program)
{
    const auto known = m_processes.constFind(program);
    if (known != m_processes.constEnd())
        return *known;
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
        u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetConnectionUnixProcessID"_s);
    question << program;
    const QDBusMessage answer = m_bus.call(question, QDBus::Block, answerLimitMs);
    const qint64 process = answer.arguments().value(0).toLongLong();
    m_processes.insert(program, process);
    return process;
}

/// For a program whose focus has not moved since we began to listen.
std::optional<AccessibleElement> AtSpiReader::searchFocus(qint64 process)
{
    const AccessibleElement registry{registryService, rootPath};
    const auto programs = elementsOf(ask(registry, accessibleInterface, u"GetChildren"_s));
    const auto program = std::ranges::find_if(
        programs, [&](const AccessibleElement &each) { return processOf(each.program) == process; });
    if (program == programs.end())
        return std::nullopt;
    const auto window = activeWindow(program->program);
    if (!window)
        return std::nullopt;
    // A match rule (aiia{ss}iaiiasib): all of these states, anything else, in tree order.
    QDBusArgument rule;
    rule.beginStructure();
    rule << QList<qint32>{1 << focusedState, 0} << qint32{1};
    rule.beginMap(QMetaType(QMetaType::QString), QMetaType(QMetaType::QString));
    rule.endMap();
    rule << qint32{1} << QList<qint32>{0, 0, 0, 0} << qint32{1} << QStringList() << qint32{1} << false;
    rule.endStructure();
    const auto matches = ask(*window, collectionInterface, u"GetMatches"_s,
        {QVariant::fromValue(rule), quint32{1}, qint32{1}, true});
    const auto found = matches ? elementsOf(matches).value(0, AccessibleElement()) : descendToFocus(*window);
    if (found.object.isEmpty())
        return std::nullopt;
    m_places.insert(found.program, {found.object, ++m_order});
    return found;
}

/// Not every toolkit can search by itself. Only what is on screen is looked at, and not for long.
AccessibleElement AtSpiReader::descendToFocus(const AccessibleElement &window)
{
    const QDeadlineTimer deadline(searchLimit);
    QList<AccessibleElement> open{window};
    while (!open.isEmpty() && !deadline.hasExpired()) {
        const AccessibleElement element = open.takeFirst();
        const auto states = ask(element, accessibleInterface, u"GetState"_s);
        if (!states || !hasState(states->value(0), showingState))
            continue;
        if (element != window && hasState(states->value(0), focusedState))
            return element;
        open += elementsOf(ask(element, accessibleInterface, u"GetChildren"_s));
    }
    return {};
}

std::optional<AccessibleElement> AtSpiReader::activeWindow(const QString &program)
{
    const auto windows = elementsOf(ask({program, rootPath}, accessibleInterface, u"GetChildren"_s));
    for (const AccessibleElement &window : windows) {
        const auto states = ask(window, accessibleInterface, u"GetState"_s);
        if (states && hasState(states->value(0), activeState))
            return window;
    }
    return std::nullopt;
}

std::optional<QString> AtSpiReader::selectedText(const AccessibleElement &element)
{
    const auto range = selectedRange(element);
    if (!range)
        return std::nullopt;
    return textBetween(element, range->start, std::min(range->end, range->start + longestSelection));
}

std::optional<TextPiece> AtSpiReader::textRoundSelection(const AccessibleElement &element, qsizetype reach)
{
    const auto range = selectedRange(element);
    const auto count = range ? propertyOf(element, textInterface, u"CharacterCount"_s) : std::nullopt;
    if (!count)
        return std::nullopt;
    // As many characters are at least as many UTF-16 units.
    const int before = std::max(range->start - static_cast<int>(reach), 0);
    const int end = std::min(range->end, range->start + longestSelection);
    const int after = std::min(end + static_cast<int>(reach), count->toInt());
    // In three pieces, for some toolkits count characters and some UTF-16 units, and the pieces' own lengths
    // are right for both.
    const auto left = textBetween(element, before, range->start);
    const auto selected = textBetween(element, range->start, end);
    const auto right = textBetween(element, end, after);
    if (!left || !selected || !right)
        return std::nullopt;
    const QString head = before > 0 ? withoutHalfAtStart(*left) : *left;
    const QString tail = after < count->toInt() ? withoutHalfAtEnd(*right) : *right;
    return TextPiece{head + *selected + tail, head.size(), selected->size()};
}

std::optional<AtSpiReader::Range> AtSpiReader::selectedRange(const AccessibleElement &element)
{
    const auto count = ask(element, textInterface, u"GetNSelections"_s);
    if (!count)
        return std::nullopt;
    if (count->value(0).toInt() < 1)
        return Range{0, 0};
    const auto ends = ask(element, textInterface, u"GetSelection"_s, {qint32{0}});
    if (!ends || ends->size() < 2)
        return std::nullopt;
    const int one = ends->at(0).toInt();
    const int other = ends->at(1).toInt();
    return Range{std::max(std::min(one, other), 0), std::max(one, other)};
}

std::optional<QString> AtSpiReader::textBetween(const AccessibleElement &element, int start, int end)
{
    if (end <= start)
        return QString();
    const auto answer = ask(element, textInterface, u"GetText"_s, {start, end});
    return answer ? std::optional{answer->value(0).toString()} : std::nullopt;
}

std::optional<bool> AtSpiReader::isWebArea(const AccessibleElement &element)
{
    const auto role = ask(element, accessibleInterface, u"GetRole"_s);
    return role ? std::optional{role->value(0).toUInt() == documentWebRole} : std::nullopt;
}

std::optional<AccessibleElement> AtSpiReader::parent(const AccessibleElement &element)
{
    const auto told = propertyOf(element, accessibleInterface, u"Parent"_s);
    if (!told || !told->canConvert<QDBusArgument>())
        return std::nullopt;
    return elementOf(told->value<QDBusArgument>());
}

std::optional<QString> AtSpiReader::address(const AccessibleElement &element)
{
    // One family of browsers says it this way, the other that.
    for (const QString &name : {u"DocURL"_s, u"URI"_s}) {
        const auto answer = ask(element, documentInterface, u"GetAttributeValue"_s, {name});
        if (answer && !answer->value(0).toString().isEmpty())
            return answer->value(0).toString();
    }
    return std::nullopt;
}

std::optional<QVariantList> AtSpiReader::ask(const AccessibleElement &element, const QString &interface,
    const QString &method, const QVariantList &arguments)
{
    if (!m_bus.isConnected() || m_slow.contains(element.program))
        return std::nullopt;
    QDBusMessage question =
        QDBusMessage::createMethodCall(element.program, element.object, interface, method);
    question.setArguments(arguments);
    const QDBusMessage answer = m_bus.call(question, QDBus::Block, answerLimitMs);
    if (answer.type() == QDBusMessage::ReplyMessage)
        return answer.arguments();
    const auto error = QDBusError(answer).type();
    if (error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut)
        m_slow.insert(element.program);
    return std::nullopt;
}

std::optional<QVariant> AtSpiReader::propertyOf(
    const AccessibleElement &element, const QString &interface, const QString &name)
{
    const auto answer = ask(element, propertiesInterface, u"Get"_s, {interface, name});
    return answer ? std::optional{answer->value(0).value<QDBusVariant>().variant()} : std::nullopt;
}

} // namespace nimbrelle
