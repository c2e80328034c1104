#include "shell/views/IconArt.h"

#include <QPolygonF>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace nimbrelle {
namespace {

constexpr int steps = 240;
constexpr double startAngle = 1.361356816555577;
constexpr double sweep = 5 * std::numbers::pi / 3;
constexpr QPointF centre(0.475, 0.485);

double angleAt(double t)
{
    return startAngle + t * sweep;
}

double radiusAt(double angle)
{
    return (1 + 0.028 * std::sin(2 * angle + 0.9) + 0.012 * std::sin(5 * angle + 0.3)) * 0.265;
}

double breadthAt(double t, double brush)
{
    const double breadth =
        brush * (0.8 * std::pow(1 - t, 0.8) + 0.2) * (1 + 0.06 * std::sin(3.2 * std::numbers::pi * t + 0.4));
    return t > 0.92 ? breadth * (1 - t) / 0.08 : breadth;
}

QPointF onRing(double angle, double radius)
{
    return centre + QPointF(std::cos(angle), std::sin(angle)) * radius;
}

} // namespace

QPainterPath ensoPath(double weight)
{
    const double brush = 0.115 * weight;
    QPolygonF edge;
    QPolygonF inner;
    for (int i = 0; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        const double angle = angleAt(t);
        const double half = breadthAt(t, brush) / 2;
        edge.append(onRing(angle, radiusAt(angle) + half));
        inner.append(onRing(angle, radiusAt(angle) - half));
    }
    std::ranges::reverse(inner);
    edge += inner;
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addPolygon(edge);
    path.closeSubpath();
    QPainterPath tip;
    const double half = breadthAt(0, brush) / 2;
    tip.addEllipse(onRing(startAngle, radiusAt(startAngle)), half, half);
    return path.united(tip);
}

QPainterPath leafPath(double scale)
{
    constexpr QPointF base(0.673, 0.697);
    constexpr QPointF along(0.53, 0.848);
    constexpr QPointF across(-0.848, 0.53);
    constexpr double bulge = 0.36; // of the length, on either side
    const double length = 0.158 * scale;
    const QPointF tip = base + along * length;
    const QPointF middle = base + along * (length * 0.45);
    QPainterPath path(base);
    path.quadTo(middle + across * (length * bulge * 1.6), tip);
    path.quadTo(middle - across * (length * bulge * 1.6), base);
    path.closeSubpath();
    return path;
}

} // namespace nimbrelle
