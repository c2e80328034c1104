#pragma once

#include <QStringView>

namespace nimbrelle {

/// The review window.
inline constexpr QStringView reviewSheet = uR"(
QPushButton[large="true"] { border-radius: $10; }
QLineEdit[kind="answer"] { background: $surface; border: 1px solid $borderStrong;
    border-radius: $8; padding: 0 $10; selection-background-color: $select; selection-color: $ink; }
QLineEdit[kind="answer"]:focus { border: 2px solid $accentLine; padding: 0 $9; }
QFrame[kind="memoryRule"] { background: $purpleText/75; }
QLabel[kind="seal"] { background: $leaf; border-radius: $6; }
)";

} // namespace nimbrelle
