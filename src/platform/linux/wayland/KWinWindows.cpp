#include "platform/linux/wayland/KWinWindows.h"

#include "platform/linux/ProgramKinds.h"

#include <QCoro/QCoroSignal>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QUuid>

#include <algorithm>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

constexpr std::chrono::milliseconds patience{300};
const QString path = u"/Windows"_s;

// KWin 5 and 6 call the same things differently. A window that is being moved by hand tells its place once it
// stands still.
constexpr auto common = R"js(
function all() { return workspace.windowList ? workspace.windowList() : workspace.clientList(); }
)js";

constexpr auto watching = R"js(
function isHere(w) {
    if (w.onAllDesktops)
        return true;
    if (w.desktop === undefined)
        return w.desktops.indexOf(workspace.currentDesktop) >= 0;
    return w.desktop === workspace.currentDesktop;
}
function isShown(w) {
    return w && !w.deleted && (w.active
        || (w.managed !== false && !w.specialWindow && !w.popupWindow && !w.minimized && isHere(w)));
}
function contentOf(w) {
    const f = w.clientGeometry || w.frameGeometry;
    const b = w.bufferGeometry || f; // within the frame of KWin's own, or with the shadow that it draws itself
    const x = Math.max(f.x, b.x), y = Math.max(f.y, b.y);
    return { x: x, y: y, width: Math.min(f.x + f.width, b.x + b.width) - x,
        height: Math.min(f.y + f.height, b.y + b.height) - y };
}
function described(w) {
    return { id: String(w.internalId), class: String(w.resourceClass || ""), name: String(w.resourceName || ""),
        title: String(w.caption || ""), process: w.pid, area: contentOf(w), active: w.active,
        onX: w.windowId || 0 };
}
let last = "";
function tell() {
    const shown = all().filter(isShown).sort((a, b) => a.stackingOrder - b.stackingOrder);
    const text = JSON.stringify(shown.map(described));
    if (text === last)
        return;
    last = text;
    callDBus("%1", "%2", "nimbrelle.Windows", "take", text);
}
function follow(object, signals, handler) {
    for (const name of signals)
        if (object[name] && object[name].connect)
            object[name].connect(handler);
}
function followWindow(w) {
    follow(w, ["activeChanged", "captionChanged", "minimizedChanged", "desktopFileNameChanged", "windowClassChanged",
        "desktopChanged", "desktopsChanged", "clientFinishUserMovedResized", "interactiveMoveResizeFinished"],
        () => tell());
    follow(w, ["frameGeometryChanged", "bufferGeometryChanged"], () => {
        if (!w.move && !w.resize)
            tell();
    });
}
all().forEach(followWindow);
follow(workspace, ["clientAdded", "windowAdded"], w => { followWindow(w); tell(); });
follow(workspace, ["clientRemoved", "windowRemoved", "clientActivated", "windowActivated", "currentDesktopChanged"],
    () => tell());
tell();
)js";

constexpr auto activating = R"js(
for (const w of all()) {
    if (String(w.internalId).indexOf("%1") !== 0)
        continue;
    if (workspace.windowList)
        workspace.activeWindow = w;
    else
        workspace.activeClient = w;
}
)js";

/// The part of KWin's identifier that numbers hold: three groups of it, which tell windows apart well enough.
quint64 numberOf(const QUuid &id)
{
    return quint64(id.data1) << 32U | quint64(id.data2) << 16U | id.data3;
}

QString beginningOf(quint64 number)
{
    return u"{%1-%2-%3-"_s.arg(number >> 32U, 8, 16, '0'_L1)
        .arg(number >> 16U & 0xffffU, 4, 16, '0'_L1)
        .arg(number & 0xffffU, 4, 16, '0'_L1);
}

quint64 activeIn(const QList<SessionWindow> &windows)
{
    const auto active = std::ranges::find_if(windows, &SessionWindow::isActive);
    return active == windows.end() ? 0 : active->application.window;
}

} // namespace

KWinWindows::KWinWindows(const QDBusConnection &bus, Conversions conversions)
    : m_bus(bus)
    , m_conversions(std::move(conversions))
    , m_watcher(KWinScript::service, bus, QDBusServiceWatcher::WatchForOwnerChange)
    , m_script(bus, u"nimbrelle"_s)
    , m_activation(bus, u"nimbrelle-activate"_s)
{
    if (!m_bus.isConnected())
        return;
    m_bus.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString &, const QString &, const QString &owner) { follow(owner); });
    follow(m_bus.interface()->serviceOwner(KWinScript::service).value());
}

KWinWindows::~KWinWindows()
{
    m_bus.unregisterObject(path);
}

void KWinWindows::follow(const QString &owner)
{
    m_owner = owner;
    m_isTold = false;
    replaceAll({});
    if (isOffered())
        load();
}

QCoro::Task<> KWinWindows::load()
{
    m_isTold = false;
    const QString text = QString::fromUtf8(watching).arg(m_bus.baseService(), path);
    const QByteArray script = common + text.toUtf8();
    co_await m_script.run(script);
}

QCoro::Task<> KWinWindows::refresh()
{
    const QPointer<KWinWindows> self(this);
    const std::optional<bool> isLoaded = co_await m_script.isLoaded();
    if (!self || !isLoaded)
        co_return;
    if (!*isLoaded)
        co_await load();
    if (self && !m_isTold)
        co_await qCoro(this, &KWinWindows::told, patience);
}

void KWinWindows::take(const QString &windows)
{
    if (message().service() != m_owner)
        return;
    QList<SessionWindow> told;
    for (const QJsonValue &each : QJsonDocument::fromJson(windows.toUtf8()).array())
        told.append(windowOf(each.toObject()));
    m_isTold = true;
    replaceAll(told);
    emit this->told();
}

SessionWindow KWinWindows::windowOf(const QJsonObject &told) const
{
    const quint64 number = numberOf(QUuid::fromString(told["id"_L1].toString()));
    const auto onX = static_cast<quint32>(told["onX"_L1].toInteger());
    const qint64 process = told["process"_L1].toInteger();
    const QJsonObject content = told["area"_L1].toObject();
    const QRectF area(content["x"_L1].toDouble(), content["y"_L1].toDouble(), content["width"_L1].toDouble(),
        content["height"_L1].toDouble());

    SessionWindow window{.area = QRect(m_conversions.toPixel(area.topLeft()),
                             m_conversions.toPixel(area.bottomRight()) - QPoint(1, 1)),
        .isActive = told["active"_L1].toBool(),
        .isOwn = process == ::getpid()};
    if (window.isOwn) {
        window.application = ownProgram();
    } else if (onX) {
        const SessionWindow *before = known(number);
        window.application = before ? before->application : m_conversions.programOnX(onX);
    } else {
        const QString name = told["class"_L1].toString();
        const QString shown = name.isEmpty() ? told["name"_L1].toString() : name;
        window.application = programOf({.instance = shown, .name = shown}, m_names);
    }
    window.application.windowTitle = told["title"_L1].toString();
    window.application.process = process;
    window.application.window = number;
    return window;
}

const SessionWindow *KWinWindows::known(quint64 number) const
{
    const auto found = std::ranges::find_if(
        m_windows, [&](const SessionWindow &each) { return each.application.window == number; });
    return found == m_windows.end() ? nullptr : &*found;
}

void KWinWindows::replaceAll(const QList<SessionWindow> &windows)
{
    const quint64 before = activeIn(m_windows);
    m_windows = windows;
    if (activeIn(m_windows) != before)
        emit activeChanged();
}

void KWinWindows::activate(const Application &application)
{
    if (!application.window)
        return;
    const QString text = QString::fromUtf8(activating).arg(beginningOf(application.window));
    m_activation.run(common + text.toUtf8());
}

} // namespace nimbrelle
