#include "platform/linux/wayland/WaylandConnection.h"

#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <poll.h>

namespace nimbrelle {
namespace {

constexpr quint32 compositorVersion = 4;
constexpr quint32 outputVersion = 2;
constexpr quint32 seatVersion = 5;

} // namespace

struct WaylandConnection::Output {
    quint32 name;
    Owned<wl_output> output;
    Owned<zxdg_output_v1> logical;
    QRect area;
};

const wl_registry_listener WaylandConnection::registryListener{
    .global =
        [](void *self, wl_registry *, quint32 name, const char *interface, quint32 version) {
            static_cast<WaylandConnection *>(self)->addGlobal(name, interface, version);
        },
    .global_remove = [](void *self, wl_registry *,
                         quint32 name) { static_cast<WaylandConnection *>(self)->removeGlobal(name); },
};

WaylandConnection::WaylandConnection() : m_display(wl_display_connect(nullptr))
{
    if (!m_display)
        return;
    m_registry = wl_display_get_registry(m_display);
    wl_registry_add_listener(m_registry, &registryListener, this);
    wl_display_roundtrip(m_display);
    m_compositor = bind<wl_compositor>(wl_compositor_interface, compositorVersion);
    m_memory = bind<wl_shm>(wl_shm_interface, 1);
    m_seat = bind<wl_seat>(wl_seat_interface, seatVersion);
    m_outputManager = bind<zxdg_output_manager_v1>(zxdg_output_manager_v1_interface, 1);
    for (const auto &output : m_outputs)
        followOutput(*output);
    wl_display_roundtrip(m_display);

    const int file = wl_display_get_fd(m_display);
    m_readable = std::make_unique<QSocketNotifier>(file, QSocketNotifier::Read);
    m_writable = std::make_unique<QSocketNotifier>(file, QSocketNotifier::Write);
    m_writable->setEnabled(false);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &WaylandConnection::read);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &WaylandConnection::flush);
}

WaylandConnection::~WaylandConnection()
{
    if (!m_display)
        return;
    m_readable.reset();
    m_writable.reset();
    m_outputs.clear();
    // All other objects go with the connection.
    wl_display_disconnect(m_display);
}

void WaylandConnection::addGlobal(quint32 name, const char *interface, quint32 version)
{
    m_globals.push_back({.name = name, .interface = interface, .version = version});
    if (m_globals.back().interface == wl_output_interface.name)
        addOutput(m_globals.back());
}

void WaylandConnection::removeGlobal(quint32 name)
{
    std::erase_if(m_globals, [name](const Global &each) { return each.name == name; });
    std::erase_if(m_outputs, [name](const auto &each) { return each->name == name; });
}

void WaylandConnection::addOutput(const Global &global)
{
    auto *output = static_cast<wl_output *>(wl_registry_bind(
        m_registry, global.name, &wl_output_interface, std::min(global.version, outputVersion)));
    m_outputs.push_back(std::make_unique<Output>(
        Output{.name = global.name, .output{output}, .logical = nullptr, .area = {}}));
    if (m_outputManager)
        followOutput(*m_outputs.back());
}

void WaylandConnection::followOutput(Output &output)
{
    static const zxdg_output_v1_listener listener{
        .logical_position = [](void *self, zxdg_output_v1 *, int x,
                                int y) { static_cast<Output *>(self)->area.moveTopLeft(QPoint(x, y)); },
        .logical_size = [](void *self, zxdg_output_v1 *, int width,
                            int height) { static_cast<Output *>(self)->area.setSize(QSize(width, height)); },
        .done = [](void *, zxdg_output_v1 *) {},
        .name = [](void *, zxdg_output_v1 *, const char *) {},
        .description = [](void *, zxdg_output_v1 *, const char *) {},
    };
    if (!m_outputManager)
        return;
    output.logical.reset(zxdg_output_manager_v1_get_xdg_output(m_outputManager, output.output.get()));
    zxdg_output_v1_add_listener(output.logical.get(), &listener, &output);
    flush();
}

QList<WaylandOutput> WaylandConnection::outputs() const
{
    QList<WaylandOutput> outputs;
    for (const auto &each : m_outputs)
        if (!each->area.isEmpty())
            outputs.append({.output = each->output.get(), .area = each->area});
    return outputs;
}

bool WaylandConnection::offers(const wl_interface &interface, quint32 version) const
{
    return std::ranges::any_of(m_globals,
        [&](const Global &each) { return each.interface == interface.name && each.version >= version; });
}

void *WaylandConnection::bindAny(const wl_interface &interface, quint32 version) const
{
    const auto found = std::ranges::find_if(m_globals,
        [&](const Global &each) { return each.interface == interface.name && each.version >= version; });
    return found == m_globals.end() ? nullptr
                                    : wl_registry_bind(m_registry, found->name, &interface, version);
}

void WaylandConnection::flush()
{
    if (!isOpen())
        return;
    const bool isFull = wl_display_flush(m_display) < 0 && errno == EAGAIN;
    if (m_writable)
        m_writable->setEnabled(isFull);
}

void WaylandConnection::roundTrip()
{
    if (isOpen())
        wl_display_roundtrip(m_display);
}

// The socket may have been read meanwhile by a round trip, so nothing here may wait for it.
void WaylandConnection::read()
{
    while (wl_display_prepare_read(m_display) != 0) {
        if (wl_display_dispatch_pending(m_display) < 0) {
            fail();
            return;
        }
    }
    pollfd ready{.fd = wl_display_get_fd(m_display), .events = POLLIN, .revents = 0};
    if (::poll(&ready, 1, 0) > 0)
        wl_display_read_events(m_display);
    else
        wl_display_cancel_read(m_display);
    wl_display_dispatch_pending(m_display);
    flush();
    if (!isOpen())
        fail();
}

void WaylandConnection::fail()
{
    m_readable->setEnabled(false);
    m_writable->setEnabled(false);
    emit closed();
}

} // namespace nimbrelle
