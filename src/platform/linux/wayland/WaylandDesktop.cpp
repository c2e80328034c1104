#include "platform/linux/wayland/WaylandDesktop.h"

#include "platform/linux/wayland/AtSpiWindows.h"
#include "platform/linux/wayland/KWinWindows.h"
#include "platform/linux/wayland/LayerProbe.h"
#include "platform/linux/wayland/SwayWindows.h"
#include "platform/linux/wayland/WlrCapture.h"
#include "platform/linux/wayland/XProbe.h"
#include "platform/linux/x11/X11Desktop.h"

#include <QRectF>

namespace nimbrelle {
namespace {

/// By its name alone, for nothing is asked of it: it tells only the window with the focus.
constexpr wl_interface primarySelectionInterface{.name = "zwp_primary_selection_device_manager_v1",
    .version = 1,
    .method_count = 0,
    .methods = nullptr,
    .event_count = 0,
    .events = nullptr};

} // namespace

WaylandDesktop::WaylandDesktop(X11Desktop &x11, AtSpiBus &accessibilityBus)
    : m_x11(x11)
    , m_accessibilityBus(accessibilityBus)
    , m_probe(makeProbe())
    , m_windows(makeWindows())
    , m_capture(makeCapture())
    , pointer(*m_probe, x11.screens)
    , frontApplication(*m_windows)
    , windowAtPointer(*m_windows, pointer, x11.screens)
    , input({.clock = SystemClock::shared(),
          .probe = *m_probe,
          .pointer = pointer,
          .windows = *m_windows,
          .screens = x11.screens,
          .canMark = [this] { return canMark(); },
          .isOwnSelection = [this] { return m_x11.primarySelection.isOwn(); }})
    , capture(*m_capture)
    , primarySelection(
          m_primary.isOffered() ? static_cast<PrimarySelection &>(m_primary) : x11.primarySelection)
{
    const auto follow = [this]<class Primary>(const Primary &primary) {
        QObject::connect(&primary, &Primary::claimed, &input, &WaylandInput::selectionClaimed);
        QObject::connect(&primary, &Primary::gone, &input, &WaylandInput::selectionGone);
    };
    if (m_primary.isOffered())
        follow(m_primary);
    else
        follow(x11.primarySelection);
}

std::unique_ptr<PointerProbe> WaylandDesktop::makeProbe()
{
    auto layers = std::make_unique<LayerProbe>(m_connection, [this](QPointF at) { return pixelOf(at); });
    if (layers->isOffered())
        return layers;
    return std::make_unique<XProbe>(m_x11.x, m_x11.screens);
}

std::unique_ptr<SessionWindows> WaylandDesktop::makeWindows()
{
    if (const QString sway = qEnvironmentVariable("SWAYSOCK"); !sway.isEmpty())
        return std::make_unique<SwayWindows>(sway, [this](QPointF at) { return pixelOf(at); });
    auto kwin = std::make_unique<KWinWindows>(QDBusConnection::sessionBus(),
        KWinWindows::Conversions{.toPixel = [this](QPointF at) { return pixelOf(at); },
            .programOnX = [this](quint32 window) { return m_x11.frontApplication.applicationOf(window); }});
    if (kwin->isOffered())
        return kwin;
    return std::make_unique<AtSpiWindows>(
        m_accessibilityBus, [this] { return m_x11.frontApplication.current(); });
}

std::unique_ptr<ScreenCapture> WaylandDesktop::makeCapture()
{
    return std::make_unique<WlrCapture>(
        m_connection, m_x11.screens, [this](QPoint at) { return logicalOf(at); });
}

// Without a word of the program in front, no excluded one could be spared.
bool WaylandDesktop::canMark() const
{
    return m_connection.isOpen() && (m_primary.isOffered() || showsPrimaryToX()) && m_probe->isOffered()
        && m_windows->isOffered();
}

// Compositors that have a protocol for it keep it from X programs that lack the focus.
bool WaylandDesktop::showsPrimaryToX() const
{
    return m_x11.primarySelection.isHeard() && m_connection.offers(primarySelectionInterface)
        && !m_connection.offers(zwlr_data_control_manager_v1_interface);
}

QRect WaylandDesktop::allOutputs() const
{
    QRect all;
    for (const WaylandOutput &each : m_connection.outputs())
        all |= each.area;
    return all;
}

// One factor for all monitors: compositors that let X programs scale by themselves give them the finest
// pixels.
double WaylandDesktop::xScale() const
{
    const QRect all = allOutputs();
    const QRect onX = m_x11.screens.layout().bounds();
    return all.isEmpty() || onX.isEmpty() ? 1 : double(onX.width()) / all.width();
}

QPoint WaylandDesktop::pixelOf(QPointF logical) const
{
    return ((logical - allOutputs().topLeft()) * xScale()).toPoint();
}

QPointF WaylandDesktop::logicalOf(QPoint pixel) const
{
    return QPointF(pixel) / xScale() + allOutputs().topLeft();
}

} // namespace nimbrelle
