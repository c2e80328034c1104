#include "widgets/IconArt.h"

#include "frame/Failure.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace Qt::StringLiterals;

namespace nimbrelle {
namespace {

constexpr int steps = 240;
constexpr double startAngle = 1.361356816555577;
constexpr double sweep = 5 * std::numbers::pi / 3;
constexpr QPointF centre(0.475, 0.485);

const QColor ink = QColor::fromRgbF(0.17F, 0.15F, 0.13F, 0.92F);
const QColor paperTop = QColor::fromRgbF(0.97F, 0.94F, 0.89F);
const QColor paperBottom = QColor::fromRgbF(0.93F, 0.88F, 0.80F);
const QColor leaf = QColor::fromRgbF(0.87F, 0.55F, 0.22F);

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

/// What rounds the stroke where it begins. A polygon that runs the same way as the ring: set operations would
/// break curves this small into a few straight lines.
QPolygonF roundStart(double brush)
{
    constexpr int corners = 60;
    const double radius = breadthAt(0, brush) / 2;
    const QPointF middle = onRing(startAngle, radiusAt(startAngle));
    QPolygonF circle;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * i / corners;
        circle.append(middle + QPointF(std::cos(angle), std::sin(angle)) * radius);
    }
    return circle;
}

/// Turns the unit square of the shapes, whose y goes upward, into one of `size` pixels.
void enterUnitSquare(QPainter &painter, double size)
{
    painter.translate(0, size);
    painter.scale(size, -size);
}

QImage transparentSquare(int pixels)
{
    QImage image(pixels, pixels, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// A soft edge as a pile of outlines, each a little larger than the one above it.
void drawShadow(QPainter &painter, const QRectF &plate, double radius, double size)
{
    constexpr int layers = 16;
    constexpr double opacity = 0.22;
    const double blur = 0.022 * size;
    painter.setBrush(QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity / layers)));
    for (int layer = 0; layer < layers; ++layer) {
        const double grown = blur * (2.0 * (layer + 0.5) / layers - 1);
        const QRectF outline = plate.translated(0, 0.01 * size).adjusted(-grown, -grown, grown, grown);
        painter.drawRoundedRect(outline, radius + grown, radius + grown);
    }
}

void drawPlate(QPainter &painter, double size)
{
    const double inset = size * 100 / 1024;
    const QRectF plate(inset, inset, size - 2 * inset, size - 2 * inset);
    const double radius = 0.225 * plate.width();
    painter.setPen(Qt::NoPen);
    drawShadow(painter, plate, radius, size);
    QLinearGradient paper(plate.topLeft(), plate.bottomLeft());
    paper.setColorAt(0, paperTop);
    paper.setColorAt(1, paperBottom);
    painter.setBrush(paper);
    painter.drawRoundedRect(plate, radius, radius);
}

void writePng(const QImage &image, const QString &path)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QFile file(path);
    const bool isWritten = buffer.open(QBuffer::WriteOnly) && image.save(&buffer, "PNG")
        && file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
    if (!isWritten)
        throw Failure(path + u": "_s + file.errorString());
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
    path.addPolygon(roundStart(brush));
    path.closeSubpath();
    return path;
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

QImage menuBarImage(int pixels, const QColor &colour)
{
    QImage image = transparentSquare(pixels);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    enterUnitSquare(painter, pixels);
    painter.translate(-0.02, -0.02);
    painter.scale(1.02, 1.02);
    // Heavier than in the application icon, to be legible this small. Worked out once for all sizes.
    static const QPainterPath enso = ensoPath(1.45);
    painter.fillPath(enso, colour);
    painter.fillPath(leafPath(1.3), colour);
    return image;
}

void drawAppIcon(QPainter &painter, double size)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    drawPlate(painter, size);
    enterUnitSquare(painter, size);
    static const QPainterPath enso = ensoPath(1);
    painter.fillPath(enso, ink);
    painter.fillPath(leafPath(1), leaf);
    painter.restore();
}

QImage appIcon(int pixels)
{
    QImage image = transparentSquare(pixels);
    QPainter painter(&image);
    drawAppIcon(painter, pixels);
    return image;
}

void renderIconset(const QString &folder)
{
    constexpr int previewPixels = 152;
    const QDir target(folder);
    target.mkpath(u"."_s); // a failure shows when the first picture is written
    for (const int size : {16, 32, 128, 256, 512}) {
        const QString name = u"icon_%1x%1"_s.arg(size);
        writePng(appIcon(size), target.filePath(name + u".png"_s));
        writePng(appIcon(2 * size), target.filePath(name + u"@2x.png"_s));
    }
    writePng(menuBarImage(previewPixels), target.filePath(u"menubar-preview.png"_s));
}

} // namespace nimbrelle
