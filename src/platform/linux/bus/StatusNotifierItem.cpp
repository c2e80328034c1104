#include "platform/linux/bus/StatusNotifierItem.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QStandardPaths>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

const QString watcherService = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;
const QString itemPath = u"/StatusNotifierItem"_s; // the one where bars look
const QString menuPath = u"/MenuBar"_s;

} // namespace

QString StatusNotifierItem::installedIcon()
{
    const QString name = u"nimbrelle-symbolic"_s;
    const QString file = u"icons/hicolor/symbolic/apps/%1.svg"_s.arg(name);
    const bool isInstalled = !QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty();
    return isInstalled ? name : QString();
}

StatusNotifierItem::StatusNotifierItem(const QDBusConnection &bus, const StatusArt &art)
    : m_bus(bus)
    , m_menu(art.symbol, [this](const MenuEntry &entry) { emit chosen(entry); })
    , m_object(menuPath, art.iconName, art.icons, [this](QPoint at) { emit menuRequested(at); })
{
    registerStatusNotifierTypes();
}

StatusNotifierItem::~StatusNotifierItem()
{
    if (!m_isShown)
        return;
    m_bus.unregisterObject(itemPath);
    m_bus.unregisterObject(menuPath);
}

void StatusNotifierItem::show(MenuSource menu)
{
    m_menu.setSource(std::move(menu));
    if (std::exchange(m_isShown, true))
        return;
    if (!m_bus.isConnected())
        return setHosting(Hosting::absent);
    m_bus.registerObject(itemPath, &m_object, QDBusConnection::ExportScriptableContents);
    m_bus.registerObject(menuPath, &m_menu, QDBusConnection::ExportScriptableContents);
    auto *watcher = new QDBusServiceWatcher(watcherService, m_bus,
        QDBusServiceWatcher::WatchForRegistration | QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &StatusNotifierItem::registerItem);
    connect(
        watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setHosting(Hosting::absent); });
    for (const QString &change : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s})
        m_bus.connect(watcherService, watcherPath, watcherService, change, this, SLOT(askForHost()));
    registerItem();
}

void StatusNotifierItem::registerItem()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService, watcherPath, watcherService, u"RegisterStatusNotifierItem"_s);
    call << m_bus.baseService();
    call.setAutoStartService(false);
    auto *answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, &StatusNotifierItem::registered);
}

void StatusNotifierItem::registered(QDBusPendingCallWatcher *answer)
{
    answer->deleteLater();
    if (answer->isError())
        setHosting(Hosting::absent);
    else
        askForHost();
}

// Somebody may collect the items although no bar shows them.
void StatusNotifierItem::askForHost()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService, watcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << watcherService << u"IsStatusNotifierHostRegistered"_s;
    call.setAutoStartService(false);
    auto *answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> hasHost = *answer;
        const bool isShown = hasHost.isValid() && hasHost.value().variant().toBool();
        setHosting(isShown ? Hosting::present : Hosting::absent);
    });
}

void StatusNotifierItem::setHosting(Hosting hosting)
{
    if (std::exchange(m_hosting, hosting) != hosting)
        emit hostingChanged();
}

void StatusNotifierItem::setTitle(const QString &title)
{
    m_menu.refresh(); // a new title means a new word in the menu
    m_object.setLabel(title);
}

void StatusNotifierItem::setToolTip(const QString &title, const QString &text)
{
    m_object.setToolTip(title, text);
}

} // namespace nimbrelle
