#include "platform/linux/bus/DBusMenu.h"

#include <QBuffer>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr int rootId = 0;

QVariantMap only(const QVariantMap &properties, const QStringList &names)
{
    if (names.isEmpty())
        return properties;
    QVariantMap wanted;
    for (const QString &name : names)
        if (properties.contains(name))
            wanted.insert(name, properties.value(name));
    return wanted;
}

// There is no property for an indent, and an underscore marks an access key.
QString labelOf(const MenuEntry &entry)
{
    QString label = entry.title;
    label.replace(u'_', u"__"_s);
    return QString(entry.indent, u'\u3000') + label;
}

QByteArray pngOf(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QBuffer::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

} // namespace

DBusMenu::DBusMenu(SymbolPainter paint, Choice choose)
    : m_paint(std::move(paint)), m_choose(std::move(choose))
{
}

void DBusMenu::refresh()
{
    if (m_isRead)
        rebuild(StatusItem::MenuUse::listing);
}

uint DBusMenu::GetLayout(
    int parentId, int recursionDepth, const QStringList &propertyNames, DBusMenuLayout &layout)
{
    m_isRead = true;
    if (parentId == rootId)
        rebuild(StatusItem::MenuUse::listing);
    layout = {parentId, only(propertiesOf(parentId), propertyNames), {}};
    if (parentId != rootId || recursionDepth == 0)
        return m_revision;
    for (const int id : std::as_const(m_order)) {
        const DBusMenuLayout item{id, only(propertiesOf(id), propertyNames), {}};
        layout.children.append(QDBusVariant(QVariant::fromValue(item)));
    }
    return m_revision;
}

QList<DBusMenuProperties> DBusMenu::GetGroupProperties(
    const QList<int> &ids, const QStringList &propertyNames) const
{
    QList<DBusMenuProperties> result;
    // No numbers at all stand for all of them.
    for (const int id : ids.isEmpty() ? QList<int>{rootId} + m_order : ids)
        if (id == rootId || m_items.contains(id))
            result.append({id, only(propertiesOf(id), propertyNames)});
    return result;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString &name) const
{
    const QVariant value = propertiesOf(id).value(name);
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

void DBusMenu::Event(int id, const QString &eventId, const QDBusVariant &, uint)
{
    if (id == rootId && eventId == u"opened"_s)
        rebuild(StatusItem::MenuUse::opening);
    if (eventId != u"clicked"_s || (!m_items.contains(id) && !m_before.contains(id)))
        return;
    const MenuEntry entry = m_items.contains(id) ? m_items.value(id) : m_before.value(id);
    // Later, so that the bar gets its answer before whatever follows from the click.
    QMetaObject::invokeMethod(
        this,
        [this, entry] {
            m_choose(entry);
            refresh();
        },
        Qt::QueuedConnection);
}

QList<int> DBusMenu::EventGroup(const QList<DBusMenuEvent> &events)
{
    QList<int> unknown;
    for (const DBusMenuEvent &event : events) {
        if (event.id != rootId && !m_items.contains(event.id) && !m_before.contains(event.id))
            unknown.append(event.id);
        Event(event.id, event.event, event.data, event.timestamp);
    }
    return unknown;
}

bool DBusMenu::AboutToShow(int id)
{
    return id == rootId && rebuild(StatusItem::MenuUse::opening);
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    QList<int> changed;
    idErrors.clear();
    for (const int id : ids) {
        if (id != rootId && !m_items.contains(id))
            idErrors.append(id);
        if (AboutToShow(id))
            changed.append(id);
    }
    return changed;
}

bool DBusMenu::rebuild(StatusItem::MenuUse use)
{
    const QList<MenuEntry> entries = m_source ? m_source(use) : QList<MenuEntry>();
    QList<int> free = m_order;
    QList<int> order;
    Items items;
    for (const MenuEntry &entry : entries) {
        const auto same = std::ranges::find_if(free, [&](int id) { return m_items.value(id) == entry; });
        const int id = same == free.end() ? ++m_lastId : *same;
        free.removeOne(id);
        order.append(id);
        items.insert(id, entry);
    }
    if (order == m_order)
        return false;
    m_before = std::exchange(m_items, items);
    m_order = order;
    emit LayoutUpdated(++m_revision, rootId);
    return true;
}

QVariantMap DBusMenu::propertiesOf(int id) const
{
    if (id == rootId)
        return {{u"children-display"_s, u"submenu"_s}};
    return m_items.contains(id) ? propertiesOf(m_items.value(id)) : QVariantMap();
}

// What is as the protocol assumes it is left out. So are the keys: bars show them, and then don't act on
// them.
QVariantMap DBusMenu::propertiesOf(const MenuEntry &entry) const
{
    if (entry.kind == MenuEntry::Kind::separator)
        return {{u"type"_s, u"separator"_s}};
    QVariantMap properties{{u"label"_s, labelOf(entry)}};
    if (!entry.isEnabled)
        properties.insert(u"enabled"_s, false);
    if (entry.kind == MenuEntry::Kind::check) {
        properties.insert(u"toggle-type"_s, u"checkmark"_s);
        properties.insert(u"toggle-state"_s, entry.isChecked ? 1 : 0);
    }
    if (!entry.symbol.isEmpty())
        properties.insert(u"icon-data"_s, pngOf(m_paint(entry.symbol)));
    if (!entry.toolTip.isEmpty())
        properties.insert(u"accessible-desc"_s, QString(entry.toolTip + u' ' + entry.title));
    return properties;
}

} // namespace nimbrelle
