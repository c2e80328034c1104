#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QStringList>
#include <QVariantMap>

namespace nimbrelle {

/// A picture of a status item on the bus: rows from the top, four bytes a pixel, alpha first.
struct NotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};

struct NotifierToolTip {
    QString iconName;
    QList<NotifierPixmap> icon;
    QString title;
    QString text;
};

/// One item of a menu on the bus with all below it.
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children; ///< each a DBusMenuLayout
};

struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;
};

struct DBusMenuEvent {
    int id = 0;
    QString event;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const NotifierPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const NotifierToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, NotifierToolTip &toolTip);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayout &layout);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayout &layout);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuProperties &properties);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuProperties &properties);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &event);

/// To be called before any of them travels.
void registerStatusNotifierTypes();

} // namespace nimbrelle
