#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>

class QPainter;

namespace nimbrelle {

/// The ring of the program's picture as a brush draws it, in a unit square with its origin at the lower left.
/// `weight` is the breadth of the brush, 1 for the application icon.
QPainterPath ensoPath(double weight);

/// The leaf at its upper right, in the same square; `scale` is its length, 1 for the application icon.
QPainterPath leafPath(double scale);

/// The glyph of the status item on a transparent ground, in one colour for the bar to replace.
QImage menuBarImage(int pixels = 19, const QColor &colour = Qt::black);

/// Draws the application icon into a square of `size` pixels with its upper left corner at the origin.
void drawAppIcon(QPainter &painter, double size);
QImage appIcon(int pixels);

/// Writes the application icon as PNG at every size of the standard icon set, and a large picture of the
/// status item's glyph. Makes the folder; files of an earlier run are overwritten. Throws Failure.
void renderIconset(const QString &folder);

} // namespace nimbrelle
