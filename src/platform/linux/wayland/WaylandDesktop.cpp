#include "platform/linux/wayland/WaylandDesktop.h"

#include "platform/linux/wayland/KWinWindows.h"
#include "platform/linux/wayland/LayerProbe.h"
#include "platform/linux/wayland/SwayWindows.h"
#include "platform/linux/wayland/UntoldWindows.h"
#include "platform/linux/wayland/WlrCapture.h"
#include "platform/linux/x11/X11Desktop.h"

#include <QRectF>

namespace nimbrelle {

WaylandDesktop::WaylandDesktop(X11Desktop &x11)
    : m_x11(x11)
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
    , primarySelection(m_primary)
{
    QObject::connect(&m_primary, &WaylandPrimary::claimed, &input, &WaylandInput::selectionClaimed);
    QObject::connect(&m_primary, &WaylandPrimary::gone, &input, &WaylandInput::selectionGone);
}

std::unique_ptr<PointerProbe> WaylandDesktop::makeProbe()
{
    return std::make_unique<LayerProbe>(m_connection, [this](QPointF at) { return pixelOf(at); });
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
    return std::make_unique<UntoldWindows>();
}

std::unique_ptr<ScreenCapture> WaylandDesktop::makeCapture()
{
    return std::make_unique<WlrCapture>(
        m_connection, m_x11.screens, [this](QPoint at) { return logicalOf(at); });
}

// Without a word of the program in front, no excluded one could be spared.
bool WaylandDesktop::canMark() const
{
    return m_connection.isOpen() && m_primary.isOffered() && m_probe->isOffered() && m_windows->isOffered();
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
