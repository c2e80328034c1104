#pragma once

#include "platform/linux/bus/StatusNotifierTypes.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QTest>

#include <gtest/gtest.h>

namespace nimbrelle {

/// A bar that shows status items, on a connection of its own: it can come, go and come back, reads the item
/// as bars do, and clicks in its menu.
class StatusHost : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    StatusHost()
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("status host")))
    {
        registerStatusNotifierTypes();
    }
    ~StatusHost() override
    {
        leave();
        QDBusConnection::disconnectFromBus(QStringLiteral("status host"));
    }

    bool come()
    {
        return m_bus.registerObject(path, this, QDBusConnection::ExportScriptableContents)
            && m_bus.registerService(service);
    }
    void leave()
    {
        m_item.clear();
        m_bus.unregisterService(service);
        m_bus.unregisterObject(path);
    }
    /// A watcher without a bar: items register, and nobody shows them.
    void setHasHost(bool hasHost)
    {
        m_hasHost = hasHost;
        emit StatusNotifierHostRegistered();
    }

    /// Until the next registers.
    void forgetItem() { m_item.clear(); }

    bool hasHost() const { return m_hasHost; }
    /// Those that it was told of, each with its guide.
    const QStringList &labels() const { return m_labels; }
    const QString &item() const { return m_item; } ///< its name on the bus; empty while none is registered

    QVariant property(const QString &name)
    {
        return call(itemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
            {QStringLiteral("org.kde.StatusNotifierItem"), name})
            .value(0)
            .value<QDBusVariant>()
            .variant();
    }
    QVariantList callItem(const QString &method, const QVariantList &arguments)
    {
        return call(itemPath, QStringLiteral("org.kde.StatusNotifierItem"), method, arguments);
    }
    QVariantList callMenu(const QString &method, const QVariantList &arguments)
    {
        return call(property(QStringLiteral("Menu")).value<QDBusObjectPath>().path(),
            QStringLiteral("com.canonical.dbusmenu"), method, arguments);
    }

    /// The menu's lines by label as a bar reads them; "---" for a separator.
    QStringList readMenu()
    {
        const QVariantList answer = callMenu(QStringLiteral("GetLayout"), {0, -1, QStringList()});
        const auto layout = qdbus_cast<DBusMenuLayout>(answer.value(1));
        m_lines.clear();
        QStringList labels;
        for (const QDBusVariant &child : layout.children) {
            m_lines.append(qdbus_cast<DBusMenuLayout>(child.variant()));
            const QVariantMap &properties = m_lines.last().properties;
            const bool isSeparator = properties.value(QStringLiteral("type")) == QStringLiteral("separator");
            labels.append(
                isSeparator ? QStringLiteral("---") : properties.value(QStringLiteral("label")).toString());
        }
        return labels;
    }
    /// The properties of a line as last read; empty when there is none of that label.
    DBusMenuLayout line(const QString &label) const
    {
        for (const DBusMenuLayout &line : m_lines)
            if (line.properties.value(QStringLiteral("label")) == label)
                return line;
        return {-1, {}, {}};
    }
    bool aboutToShow() { return callMenu(QStringLiteral("AboutToShow"), {0}).value(0).toBool(); }
    void click(const QString &label)
    {
        callMenu(QStringLiteral("Event"),
            {line(label).id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    }

public slots:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &name)
    {
        m_item = name;
        m_bus.connect(name, itemPath, QStringLiteral("org.kde.StatusNotifierItem"),
            QStringLiteral("XAyatanaNewLabel"), this, SLOT(noteLabel(QString, QString)));
    }

private slots:
    void noteLabel(const QString &label, const QString &guide) { m_labels.append(label + u'/' + guide); }

signals:
    Q_SCRIPTABLE void StatusNotifierHostRegistered();

private:
    // Item and host live in one thread, so nothing may block.
    QVariantList call(
        const QString &object, const QString &interface, const QString &method, const QVariantList &arguments)
    {
        QDBusMessage message = QDBusMessage::createMethodCall(m_item, object, interface, method);
        message.setArguments(arguments);
        const QDBusPendingCall pending = m_bus.asyncCall(message);
        if (!QTest::qWaitFor([&] { return pending.isFinished(); }, 10000) || pending.isError())
            ADD_FAILURE() << method.toStdString() << ": " << pending.error().message().toStdString();
        return pending.reply().arguments();
    }

    const QString service = QStringLiteral("org.kde.StatusNotifierWatcher");
    const QString path = QStringLiteral("/StatusNotifierWatcher");
    const QString itemPath = QStringLiteral("/StatusNotifierItem");
    QDBusConnection m_bus;
    QString m_item;
    QStringList m_labels;
    bool m_hasHost = true;
    QList<DBusMenuLayout> m_lines;
};

} // namespace nimbrelle
