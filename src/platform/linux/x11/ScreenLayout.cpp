#include "platform/linux/x11/ScreenLayout.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbrelle {
namespace {

int distance(const QRect &frame, QPoint pixel)
{
    const int x = std::max({frame.left() - pixel.x(), pixel.x() - frame.right(), 0});
    const int y = std::max({frame.top() - pixel.y(), pixel.y() - frame.bottom(), 0});
    return std::max(x, y);
}

QRect strutArea(const Strut &strut, QSize root)
{
    const int length = strut.to - strut.from + 1;
    switch (strut.edge) {
    case Strut::Edge::left:
        return {0, strut.from, strut.depth, length};
    case Strut::Edge::right:
        return {root.width() - strut.depth, strut.from, strut.depth, length};
    case Strut::Edge::top:
        return {strut.from, 0, length, strut.depth};
    case Strut::Edge::bottom:
        return {strut.from, root.height() - strut.depth, length, strut.depth};
    }
    return {};
}

QRect without(QRect area, Strut::Edge edge, const QRect &taken)
{
    switch (edge) {
    case Strut::Edge::left:
        area.setLeft(taken.right() + 1);
        break;
    case Strut::Edge::right:
        area.setRight(taken.left() - 1);
        break;
    case Strut::Edge::top:
        area.setTop(taken.bottom() + 1);
        break;
    case Strut::Edge::bottom:
        area.setBottom(taken.top() - 1);
        break;
    }
    return area;
}

} // namespace

QRect workAreaOf(const QRect &frame, QSize root, const QList<Strut> &struts)
{
    QRect left = frame;
    for (const Strut &strut : struts) {
        const QRect taken = strutArea(strut, root);
        if (!taken.intersects(left))
            continue;
        const QRect rest = without(left, strut.edge, taken);
        if (rest.isValid())
            left = rest;
    }
    return left;
}

QList<Strut> strutsOf(const std::vector<quint32> &values)
{
    using Edge = Strut::Edge;
    constexpr int wholeEdge = 1 << 16;
    constexpr std::array edges{Edge::left, Edge::right, Edge::top, Edge::bottom};
    const auto value = [&](std::size_t i) {
        return static_cast<int>(std::min(values[i], quint32{wholeEdge}));
    };
    QList<Strut> struts;
    for (std::size_t i = 0; i < edges.size() && values.size() >= edges.size(); ++i) {
        if (values[i] == 0)
            continue;
        const bool partial = values.size() >= 12;
        struts.append({.edge = edges[i],
            .depth = value(i),
            .from = partial ? value(4 + 2 * i) : 0,
            .to = partial ? value(5 + 2 * i) : wholeEdge});
    }
    return struts;
}

QList<Screen> ScreenLayout::screens() const
{
    QList<Screen> screens;
    for (const Monitor &monitor : m_monitors)
        screens.append({.id = monitor.id,
            .frame = turned(monitor, monitor.frame),
            .workArea = turned(monitor, monitor.workArea),
            .scale = monitor.scale});
    return screens;
}

QRect ScreenLayout::bounds() const
{
    QRect all;
    for (const Monitor &each : m_monitors)
        all |= each.frame;
    return all;
}

QPointF ScreenLayout::pointOf(QPoint pixel) const
{
    const Monitor *monitor = nearest(pixel);
    if (!monitor)
        return pixel;
    const QRectF spot = turned(*monitor, {pixel, QSize(0, 0)});
    return {spot.left(), spot.bottom()};
}

QPoint ScreenLayout::toolkitPointOf(QPoint pixel) const
{
    const Monitor *monitor = nearest(pixel);
    if (!monitor)
        return pixel;
    const QPoint corner = monitor->frame.topLeft();
    return corner + (QPointF(pixel - corner) / monitor->scale).toPoint();
}

QRect ScreenLayout::pixelsOf(quint32 screen, const QRectF &area) const
{
    const auto monitor =
        std::ranges::find_if(m_monitors, [&](const Monitor &each) { return each.id == screen; });
    if (monitor == m_monitors.end())
        return {};
    const auto pixel = [&](double points) { return static_cast<int>(std::lround(points * monitor->scale)); };
    const QRect wanted(pixel(area.left()), pixel(area.top()), static_cast<int>(area.width() * monitor->scale),
        static_cast<int>(area.height() * monitor->scale));
    const QRect cut = wanted.translated(monitor->frame.topLeft()) & monitor->frame;
    return cut.isValid() ? cut : QRect();
}

QRectF ScreenLayout::turned(const Monitor &monitor, const QRect &pixels) const
{
    const Monitor &main = m_monitors.constFirst();
    const QPointF origin = monitor.frame.topLeft() - main.frame.topLeft();
    const QPointF inside = QPointF(pixels.topLeft() - monitor.frame.topLeft()) / monitor.scale;
    const QSizeF size = QSizeF(pixels.size()) / monitor.scale;
    const double lowerEdge = main.frame.height() / main.scale - origin.y() - inside.y() - size.height();
    return {QPointF(origin.x() + inside.x(), lowerEdge), size};
}

const Monitor *ScreenLayout::nearest(QPoint pixel) const
{
    const auto found = std::ranges::min_element(
        m_monitors, {}, [&](const Monitor &monitor) { return distance(monitor.frame, pixel); });
    return found == m_monitors.end() ? nullptr : &*found;
}

} // namespace nimbrelle
