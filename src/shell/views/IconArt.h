#pragma once

#include <QPainterPath>

namespace nimbrelle {

/// The ring of the program's picture as a brush draws it, in a unit square with its origin at the lower left.
/// `weight` is the breadth of the brush, 1 for the application icon.
QPainterPath ensoPath(double weight);

/// The leaf at its upper right, in the same square; `scale` is its length, 1 for the application icon.
QPainterPath leafPath(double scale);

} // namespace nimbrelle
