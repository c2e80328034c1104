#include "platform/linux/wayland/SwayWindows.h"

#include "platform/linux/ProgramKinds.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

QRect rectOf(const QJsonObject &rect)
{
    return {rect["x"_L1].toInt(), rect["y"_L1].toInt(), rect["width"_L1].toInt(), rect["height"_L1].toInt()};
}

quint64 activeIn(const QList<SessionWindow> &windows)
{
    const auto active = std::ranges::find_if(windows, &SessionWindow::isActive);
    return active == windows.end() ? 0 : active->application.window;
}

} // namespace

SwayWindows::SwayWindows(const QString &socket, std::function<QPoint(QPointF)> toPixel)
    : m_ipc(socket), m_toPixel(std::move(toPixel))
{
    connect(&m_ipc, &SwayIpc::happened, this, &SwayWindows::refresh);
    connect(&m_ipc, &SwayIpc::closed, this, [this] { m_isTold = false; });
    m_ipc.ask(SwayIpc::Question::subscribe, R"(["window","workspace"])");
    refresh();
}

QCoro::Task<> SwayWindows::refresh()
{
    const std::optional<QJsonDocument> tree = co_await m_ipc.ask(SwayIpc::Question::tree);
    if (!tree)
        co_return;
    const quint64 before = activeIn(m_windows);
    m_windows.clear();
    add(tree->object());
    m_isTold = true;
    if (activeIn(m_windows) != before)
        emit activeChanged();
}

// A node is a window when it has a process; the floating ones lie above the others.
void SwayWindows::add(const QJsonObject &node)
{
    if (node.contains("pid"_L1) && node["visible"_L1].toBool()) {
        const QString appID = node["app_id"_L1].toString();
        const QJsonObject onX = node["window_properties"_L1].toObject();
        const WindowClass windowClass{.instance = appID.isEmpty() ? onX["instance"_L1].toString() : appID,
            .name = appID.isEmpty() ? onX["class"_L1].toString() : appID};
        const qint64 process = node["pid"_L1].toInteger();
        const QRect content = rectOf(node["window_rect"_L1].toObject());
        const QRect frame = rectOf(node["rect"_L1].toObject());
        const QRect area(
            frame.topLeft() + content.topLeft(), content.isEmpty() ? frame.size() : content.size());
        const bool isOwn = process == ::getpid();
        SessionWindow window{.application = isOwn ? ownProgram() : programOf(windowClass, m_names),
            .area = QRect(m_toPixel(area.topLeft()), m_toPixel(area.bottomRight())),
            .isActive = node["focused"_L1].toBool(),
            .isOwn = isOwn};
        window.application.windowTitle = node["name"_L1].toString();
        window.application.process = process;
        window.application.window = static_cast<quint64>(node["id"_L1].toInteger());
        m_windows.append(window);
    }
    for (const auto list : {"nodes"_L1, "floating_nodes"_L1})
        for (const QJsonValue &child : node[list].toArray())
            add(child.toObject());
}

void SwayWindows::activate(const Application &application)
{
    m_ipc.ask(SwayIpc::Question::command, "[con_id=" + QByteArray::number(application.window) + "] focus");
}

} // namespace nimbrelle
