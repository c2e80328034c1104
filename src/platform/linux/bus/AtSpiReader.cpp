#include "platform/linux/bus/AtSpiReader.h"

#include "platform/FrontApplication.h"

#include <QDBusArgument>
#include <QDeadlineTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {

using namespace atspi;

namespace {

constexpr quint32 documentWebRole = 95;
constexpr std::chrono::milliseconds searchLimit{100};
constexpr qsizetype widestLevel = 500; ///< of a tree, when it is searched

const QString documentInterface = u"org.a11y.atspi.Document"_s;
const QString collectionInterface = u"org.a11y.atspi.Collection"_s;
const QString objectEvents = u"org.a11y.atspi.Event.Object"_s;

/// A match rule (aiia{ss}iaiiasib): all of these states, anything else, in tree order.
QVariant focusedRule()
{
    QDBusArgument rule;
    rule.beginStructure();
    rule << QList<qint32>{1 << focusedState, 0} << qint32{1};
    rule.beginMap(QMetaType(QMetaType::QString), QMetaType(QMetaType::QString));
    rule.endMap();
    rule << qint32{1} << QList<qint32>{0, 0, 0, 0} << qint32{1} << QStringList() << qint32{1} << false;
    rule.endStructure();
    return QVariant::fromValue(rule);
}

AccessibleElement senderOf(const QDBusMessage &event)
{
    return {.program = event.service(), .object = event.path()};
}

} // namespace

AtSpiReader::AtSpiReader(AtSpiBus &bus, const FrontApplication &front) : m_bus(bus), m_front(front)
{
    connect(&m_bus, &AtSpiBus::opened, this, &AtSpiReader::listen);
    connect(
        &m_bus, &AtSpiBus::programLeft, this, [this](const QString &program) { m_places.remove(program); });
    if (m_bus.state() == Bus::connected)
        listen();
}

void AtSpiReader::listen()
{
    m_places.clear();
    QDBusConnection bus = m_bus.connection();
    bus.connect(
        QString(), QString(), objectEvents, u"StateChanged"_s, this, SLOT(handleStateChanged(QDBusMessage)));
    bus.connect(QString(), QString(), objectEvents, u"TextSelectionChanged"_s, this,
        SLOT(handleSelectionChanged(QDBusMessage)));
    m_bus.wantEvent(u"object:state-changed:focused"_s);
    m_bus.wantEvent(u"object:text-selection-changed"_s);
}

void AtSpiReader::handleStateChanged(const QDBusMessage &event)
{
    const QVariantList what = event.arguments();
    if (what.value(0).toString() == u"focused" && what.value(1).toInt() == 1)
        remember(senderOf(event), Change::focus);
}

void AtSpiReader::handleSelectionChanged(const QDBusMessage &event)
{
    remember(senderOf(event), Change::selection);
}

void AtSpiReader::remember(const AccessibleElement &element, Change change)
{
    if (element.program == m_bus.connection().baseService())
        return;
    Place &place = m_places[element.program];
    if (place.object != element.object)
        m_text.prepare(element);
    place.object = element.object;
    place.order = ++m_order;
    if (change == Change::selection) {
        place.selectionObject = element.object;
        place.selectionOrder = place.order;
    }
}

QCoro::Task<std::optional<AccessibleElement>> AtSpiReader::focusedElement()
{
    const std::optional<Application> front = m_front.current();
    if (!front)
        co_return std::nullopt;
    if (front->process == 0)
        co_return newestPlace();
    std::optional<AccessibleElement> element = co_await newestPlaceOf(front->process);
    if (!element)
        element = co_await searchFocus(front->process);
    co_return element;
}

std::optional<AccessibleElement> AtSpiReader::newestPlace() const
{
    const auto earlier = [](const Place &one, const Place &other) { return one.order < other.order; };
    const auto newest = std::max_element(m_places.cbegin(), m_places.cend(), earlier);
    if (newest == m_places.cend())
        return std::nullopt;
    return AccessibleElement{.program = newest.key(), .object = newest->object};
}

QCoro::Task<std::optional<AccessibleElement>> AtSpiReader::newestPlaceOf(qint64 process)
{
    QStringList programs = m_places.keys();
    std::ranges::sort(programs, std::ranges::greater(),
        [this](const QString &program) { return m_places.constFind(program)->order; });
    const std::optional<QString> program = co_await programOf(process, programs);
    const auto place = program ? m_places.constFind(*program) : m_places.constEnd();
    if (place == m_places.constEnd())
        co_return std::nullopt;
    co_return AccessibleElement{.program = *program, .object = place->object};
}

/// The first of them that is of the process.
QCoro::Task<std::optional<QString>> AtSpiReader::programOf(qint64 process, QStringList among)
{
    std::vector<QCoro::Task<qint64>> processes;
    for (const QString &program : among)
        processes.push_back(m_questions.processOf(program));
    std::optional<QString> found;
    for (qsizetype i = 0; i < among.size(); ++i) {
        const qint64 each = co_await processes[static_cast<std::size_t>(i)];
        if (each == process && !found)
            found = among[i];
    }
    co_return found;
}

/// For a program whose focus has not moved since we began to listen.
QCoro::Task<std::optional<AccessibleElement>> AtSpiReader::searchFocus(qint64 process)
{
    const QStringList programs = co_await m_questions.programs();
    const std::optional<QString> program = co_await programOf(process, programs);
    if (!program)
        co_return std::nullopt;
    const std::optional<AccessibleElement> window = co_await m_questions.activeWindowOf(*program);
    if (!window)
        co_return std::nullopt;
    const std::optional<AccessibleElement> found = co_await focusIn(*window);
    if (found)
        remember(*found, Change::focus);
    co_return found;
}

QCoro::Task<std::optional<AccessibleElement>> AtSpiReader::focusIn(AccessibleElement window)
{
    const QVariantList arguments{focusedRule(), quint32{1}, qint32{1}, true};
    const Answer matches = co_await m_questions.ask(window, collectionInterface, u"GetMatches"_s, arguments);
    std::optional<AccessibleElement> found;
    if (!matches)
        found = co_await descendToFocus(window);
    else if (const Elements elements = elementsOf(matches); !elements.isEmpty())
        found = elements.first();
    co_return found;
}

/// Not every toolkit can search by itself. Only what is on screen is looked at, and not for long.
QCoro::Task<std::optional<AccessibleElement>> AtSpiReader::descendToFocus(AccessibleElement window)
{
    const QDeadlineTimer deadline(searchLimit);
    Elements level{window};
    while (!level.isEmpty() && !deadline.hasExpired()) {
        const QList<Answer> states = co_await m_questions.askAll(level, u"GetState"_s);
        Elements showing;
        for (qsizetype i = 0; i < level.size(); ++i) {
            if (!hasState(states[i], showingState))
                continue;
            if (level[i] != window && hasState(states[i], focusedState))
                co_return level[i];
            showing.append(level[i]);
        }
        const QList<Answer> children = co_await m_questions.askAll(showing, u"GetChildren"_s);
        level.clear();
        for (const Answer &each : children)
            level += elementsOf(each);
        level.resize(std::min(level.size(), widestLevel));
    }
    co_return std::nullopt;
}

QCoro::Task<std::optional<MarkedText>> AtSpiReader::markedText(AccessibleElement element, qsizetype reach)
{
    std::optional<MarkedText> marked = co_await m_text.marked(element, reach);
    const QString selectionObject = m_places.value(element.program).selectionObject;
    const bool isElsewhere = !selectionObject.isEmpty() && selectionObject != element.object;
    if (isElsewhere && (!marked || marked->text.isEmpty())) { // a window that is moved takes the focus itself
        const AccessibleElement other{.program = element.program, .object = selectionObject};
        marked = co_await m_text.marked(other, reach);
    }
    if (marked)
        marked->change = m_places.value(element.program).selectionOrder; // also one told of by now
    co_return marked;
}

QCoro::Task<std::optional<bool>> AtSpiReader::isWebArea(AccessibleElement element)
{
    const Answer role = co_await m_questions.ask(element, accessibleInterface, u"GetRole"_s);
    if (!role)
        co_return std::nullopt;
    co_return role->value(0).toUInt() == documentWebRole;
}

QCoro::Task<std::optional<AccessibleElement>> AtSpiReader::parent(AccessibleElement element)
{
    const std::optional<QVariant> told =
        co_await m_questions.propertyOf(element, accessibleInterface, u"Parent"_s);
    co_return elementOf(told.value_or(QVariant()));
}

QCoro::Task<std::optional<QString>> AtSpiReader::address(AccessibleElement element)
{
    // One family of browsers says it this way, the other that.
    const QVariantList oneName{u"DocURL"_s};
    const QVariantList otherName{u"URI"_s};
    auto askedOne = m_questions.ask(element, documentInterface, u"GetAttributeValue"_s, oneName);
    auto askedOther = m_questions.ask(element, documentInterface, u"GetAttributeValue"_s, otherName);
    const Answer one = co_await askedOne;
    const Answer other = co_await askedOther;
    for (const Answer &answer : {one, other})
        if (answer && !answer->value(0).toString().isEmpty())
            co_return answer->value(0).toString();
    co_return std::nullopt;
}

} // namespace nimbrelle
