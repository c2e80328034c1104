#pragma once

#include <QDBusArgument>
#include <QDBusObjectPath>

namespace nimbrelle {

/// How the accessibility bus names an element.
struct Reference {
    QString program;
    QDBusObjectPath object;
};

inline QDBusArgument &operator<<(QDBusArgument &to, const Reference &reference)
{
    to.beginStructure();
    to << reference.program << reference.object;
    to.endStructure();
    return to;
}

inline const QDBusArgument &operator>>(const QDBusArgument &from, Reference &reference)
{
    from.beginStructure();
    from >> reference.program >> reference.object;
    from.endStructure();
    return from;
}

} // namespace nimbrelle
