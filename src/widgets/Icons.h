#pragma once

#include "widgets/IconTable.h"

#include <QColor>
#include <QIcon>
#include <QMargins>
#include <QPixmap>

namespace nimbrelle {

/// The icon in one colour on a transparent ground, `size` device-independent pixels wide and high. `cut` is
/// the colour of what is cut out of filled shapes; without one the ground shows through.
QPixmap iconPixmap(
    Icon icon, double size, double devicePixelRatio, const QColor &colour, const QColor &cut = {});

/// The picture with empty room around it, in device-independent pixels.
QPixmap padded(const QPixmap &picture, const QMargins &padding);

/// The same for a button; where it is disabled the icon is as faint as its text.
QIcon iconOf(
    Icon icon, double size, double devicePixelRatio, const QColor &colour, const QMargins &padding = {});

} // namespace nimbrelle
