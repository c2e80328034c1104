#pragma once

#include <QDBusConnection>
#include <QList>
#include <QRect>
#include <QString>

#include <optional>

namespace nimbrelle {

/// A part of a program's window as a screen reader finds it.
struct AccessiblePart {
    QString service;
    QString object;
    QString role; ///< such as "push button"
    QString name;
    QString text; ///< of a part that holds text
    QRect area; ///< in pixels of the root window
    bool isChecked = false;
    bool isFocused = false;
    bool isActive = false; ///< of a window: it has the keyboard
};

/// The accessibility bus, asked from outside. Every question waits for its answer.
class AccessibleDesktop {
public:
    AccessibleDesktop();

    /// Whether `process` reads from the bus, which it may well do before it shows anything there.
    bool isListening(qint64 process) const;

    /// What `process` shows now, in reading order; empty while it is not on the bus.
    QList<AccessiblePart> shownBy(qint64 process) const;

    /// Where characters of a part stand, in pixels of the root window. Offsets count characters.
    QRect areaOf(const AccessiblePart &part, int from, int to) const;

private:
    using Element = std::pair<QString, QString>; ///< service and object

    std::optional<Element> programOf(qint64 process) const;
    QList<Element> childrenOf(const Element &element) const;
    QVariantList ask(const QString &service, const QString &object, const QString &interface,
        const QString &method, const QVariantList &arguments = {}) const;
    void collect(const QString &service, const QString &object, QList<AccessiblePart> &into) const;

    QDBusConnection m_bus;
};

} // namespace nimbrelle
