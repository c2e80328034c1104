#pragma once

#include <QStringView>

namespace nimbrelle {

/// The status menu where we draw it ourselves, and that no menu breaks into columns: one that is taller than
/// the screen scrolls. A menu asks for that while it is made, before it has a name.
inline constexpr QStringView statusSheet = uR"(
QMenu { menu-scrollable: 1; }
#statusMenu::separator { height: 1px; background: $border; margin: $4 $10; }
)";

} // namespace nimbrelle
