#pragma once

#include "widgets/Icons.h"

#include <QImage>
#include <QString>

#include <optional>

namespace nimbrelle {

/// The status item's glyph in the sizes of bars, in a tone that shows on light and on dark ones.
QList<QImage> statusIcons();

/// The picture that a line of the status menu names; absent for a name that no line has.
std::optional<Icon> menuIcon(const QString &symbol);

/// The same drawn `pixels` wide and high.
QImage menuSymbol(const QString &symbol, int pixels, const QColor &colour);

} // namespace nimbrelle
