#include "platform/linux/wayland/LayerProbe.h"

#include "platform/linux/wayland/WaylandConnection.h"
#include "platform/linux/wayland/WaylandSurface.h"

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto longestDrag = 10s; // after which nobody waits for the release any more

} // namespace

struct LayerProbe::Sheet {
    LayerProbe *probe;
    QPoint corner; ///< of its monitor
    Owned<wl_surface> surface;
    Owned<wp_viewport> viewport;
    Owned<zwlr_layer_surface_v1> role;
    Owned<wl_buffer> buffer; ///< its own where the one pixel can't be stretched
    bool isShown = false;
};

LayerProbe::LayerProbe(WaylandConnection &connection, std::function<QPoint(QPointF)> toPixel)
    : m_connection(connection), m_toPixel(std::move(toPixel))
{
    if (!connection.isOpen() || !connection.seat())
        return;
    m_shell = connection.bind<zwlr_layer_shell_v1>(zwlr_layer_shell_v1_interface, 1);
    if (!m_shell)
        return;
    m_viewporter = connection.bind<wp_viewporter>(wp_viewporter_interface, 1);
    m_pixel = transparentBuffer(connection, {1, 1});
    m_pointer.reset(wl_seat_get_pointer(connection.seat()));
    static const wl_pointer_listener listener{
        .enter =
            [](void *self, wl_pointer *, quint32, wl_surface *surface, wl_fixed_t x, wl_fixed_t y) {
                static_cast<LayerProbe *>(self)->enter(
                    surface, {wl_fixed_to_double(x), wl_fixed_to_double(y)});
            },
        .leave = [](void *, wl_pointer *, quint32, wl_surface *) {},
        .motion = [](void *, wl_pointer *, quint32, wl_fixed_t, wl_fixed_t) {},
        .button = [](void *, wl_pointer *, quint32, quint32, quint32, quint32) {},
        .axis = [](void *, wl_pointer *, quint32, quint32, wl_fixed_t) {},
        .frame = [](void *, wl_pointer *) {},
        .axis_source = [](void *, wl_pointer *, quint32) {},
        .axis_stop = [](void *, wl_pointer *, quint32, quint32) {},
        .axis_discrete = [](void *, wl_pointer *, quint32, int) {},
    };
    wl_pointer_add_listener(m_pointer.get(), &listener, this);
    connection.flush();
    m_watchdog.setSingleShot(true);
    connect(&m_watchdog, &QTimer::timeout, this, [this] { finish(std::nullopt); });
    connect(&connection, &WaylandConnection::closed, this, [this] { finish(std::nullopt); });
}

LayerProbe::~LayerProbe()
{
    m_sheets.clear();
}

void LayerProbe::ask(std::function<void(std::optional<Answer>)> answered)
{
    finish(std::nullopt);
    m_answered = std::move(answered);
    if (!isOffered() || !m_connection.isOpen() || m_connection.outputs().isEmpty()) {
        QMetaObject::invokeMethod(
            this, [this] { finish(std::nullopt); }, Qt::QueuedConnection);
        return;
    }
    m_since.start();
    m_watchdog.start(longestDrag);
    cover();
}

void LayerProbe::cover()
{
    static const zwlr_layer_surface_v1_listener listener{
        .configure =
            [](void *data, zwlr_layer_surface_v1 *, quint32 serial, quint32 width, quint32 height) {
                auto *sheet = static_cast<Sheet *>(data);
                sheet->probe->configure(
                    *sheet, serial, QSize(static_cast<int>(width), static_cast<int>(height)));
            },
        .closed = [](void *data, zwlr_layer_surface_v1 *) { static_cast<Sheet *>(data)->isShown = true; },
    };
    for (const WaylandOutput &output : m_connection.outputs()) {
        m_sheets.push_back(std::make_unique<Sheet>(Sheet{.probe = this,
            .corner = output.area.topLeft(),
            .surface = nullptr,
            .viewport = nullptr,
            .role = nullptr,
            .buffer = nullptr}));
        Sheet &sheet = *m_sheets.back();
        sheet.surface.reset(wl_compositor_create_surface(m_connection.compositor()));
        if (m_viewporter)
            sheet.viewport.reset(wp_viewporter_get_viewport(m_viewporter, sheet.surface.get()));
        sheet.role.reset(zwlr_layer_shell_v1_get_layer_surface(m_shell, sheet.surface.get(), output.output,
            ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "nimbrelle-pointer"));
        zwlr_layer_surface_v1_add_listener(sheet.role.get(), &listener, &sheet);
        zwlr_layer_surface_v1_set_anchor(sheet.role.get(),
            ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM
                | ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT);
        zwlr_layer_surface_v1_set_exclusive_zone(sheet.role.get(), -1); // over panels, too
        wl_surface_commit(sheet.surface.get());
    }
    m_connection.flush();
}

void LayerProbe::configure(Sheet &sheet, quint32 serial, QSize size)
{
    zwlr_layer_surface_v1_ack_configure(sheet.role.get(), serial);
    if (sheet.isShown || size.isEmpty()) // some compositors configure a surface more than once
        return;
    sheet.isShown = true;
    if (sheet.viewport)
        wp_viewport_set_destination(sheet.viewport.get(), size.width(), size.height());
    else
        sheet.buffer = transparentBuffer(m_connection, size);
    wl_surface_attach(sheet.surface.get(), sheet.buffer ? sheet.buffer.get() : m_pixel.get(), 0, 0);
    wl_surface_commit(sheet.surface.get());
    m_connection.flush();
}

void LayerProbe::enter(wl_surface *surface, QPointF at)
{
    for (const auto &sheet : m_sheets) {
        if (sheet->surface.get() != surface)
            continue;
        const Answer answer{
            .pixel = m_toPixel(at + sheet->corner), .waited = std::chrono::milliseconds(m_since.elapsed())};
        uncover(); // first of all, so that nothing of the user's reaches us
        finish(answer);
        return;
    }
}

void LayerProbe::uncover()
{
    m_sheets.clear();
    m_connection.flush();
}

void LayerProbe::finish(std::optional<Answer> answer)
{
    m_watchdog.stop();
    if (!m_sheets.empty())
        uncover();
    if (const auto answered = std::exchange(m_answered, {}))
        answered(answer);
}

} // namespace nimbrelle
