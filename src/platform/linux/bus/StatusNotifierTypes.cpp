#include "platform/linux/bus/StatusNotifierTypes.h"

#include <QDBusMetaType>

namespace nimbrelle {

namespace {

template <class... Members> QDBusArgument &put(QDBusArgument &argument, const Members &...members)
{
    argument.beginStructure();
    (argument << ... << members);
    argument.endStructure();
    return argument;
}

template <class... Members> const QDBusArgument &take(const QDBusArgument &argument, Members &...members)
{
    argument.beginStructure();
    (argument >> ... >> members);
    argument.endStructure();
    return argument;
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const NotifierPixmap &pixmap)
{
    return put(argument, pixmap.width, pixmap.height, pixmap.pixels);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierPixmap &pixmap)
{
    return take(argument, pixmap.width, pixmap.height, pixmap.pixels);
}

QDBusArgument &operator<<(QDBusArgument &argument, const NotifierToolTip &toolTip)
{
    return put(argument, toolTip.iconName, toolTip.icon, toolTip.title, toolTip.text);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierToolTip &toolTip)
{
    return take(argument, toolTip.iconName, toolTip.icon, toolTip.title, toolTip.text);
}

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayout &layout)
{
    return put(argument, layout.id, layout.properties, layout.children);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayout &layout)
{
    return take(argument, layout.id, layout.properties, layout.children);
}

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuProperties &properties)
{
    return put(argument, properties.id, properties.properties);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuProperties &properties)
{
    return take(argument, properties.id, properties.properties);
}

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &event)
{
    return put(argument, event.id, event.event, event.data, event.timestamp);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &event)
{
    return take(argument, event.id, event.event, event.data, event.timestamp);
}

void registerStatusNotifierTypes()
{
    qDBusRegisterMetaType<NotifierPixmap>();
    qDBusRegisterMetaType<QList<NotifierPixmap>>();
    qDBusRegisterMetaType<NotifierToolTip>();
    qDBusRegisterMetaType<DBusMenuLayout>();
    qDBusRegisterMetaType<DBusMenuProperties>();
    qDBusRegisterMetaType<QList<DBusMenuProperties>>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<QList<DBusMenuEvent>>();
}

} // namespace nimbrelle
