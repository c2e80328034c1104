#pragma once

#include "platform/StatusItem.h"
#include "platform/linux/bus/StatusNotifierTypes.h"

#include <QImage>

namespace nimbrelle {

/// A menu that the bar draws and we fill, over the bus. An item keeps its number as long as it says the same,
/// so that a menu that changes while it is open stays still, and a click always means what was read.
class DBusMenu : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT)

public:
    using SymbolPainter = std::function<QImage(const QString &symbol)>;

    using Choice = std::function<void(const MenuEntry &entry)>;

    /// `paint` draws a named symbol at the size of menus; `choose` is called from the event loop.
    DBusMenu(SymbolPainter paint, Choice choose);

    void setSource(StatusItem::MenuSource source) { m_source = std::move(source); }

    /// Something in the menu may have changed; a bar that has read it is told.
    void refresh();

    uint version() const { return 3; }
    QString textDirection() const { return QStringLiteral("ltr"); }
    QString status() const { return QStringLiteral("normal"); }
    QStringList iconThemePath() const { return {}; }

public slots:
    // The protocol's own names. Types are written in full, since the bus looks them up by name.
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
        nimbrelle::DBusMenuLayout &layout);
    Q_SCRIPTABLE QList<nimbrelle::DBusMenuProperties> GetGroupProperties(
        const QList<int> &ids, const QStringList &propertyNames) const;
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name) const;
    Q_SCRIPTABLE void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<nimbrelle::DBusMenuEvent> &events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

signals:
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);

private:
    using Items = QMap<int, MenuEntry>;

    bool rebuild(StatusItem::MenuUse use);
    QVariantMap propertiesOf(int id) const;
    QVariantMap propertiesOf(const MenuEntry &entry) const;

    const SymbolPainter m_paint;
    const Choice m_choose;
    StatusItem::MenuSource m_source;
    QList<int> m_order; ///< the numbers of the items, from the top
    Items m_items;
    Items m_before; ///< those of the menu before this one, which may still be on screen
    int m_lastId = 0;
    bool m_isRead = false;
    uint m_revision = 1;
};

} // namespace nimbrelle
