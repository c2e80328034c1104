#pragma once

#include <QStringView>

namespace nimbrelle {

/// Groups of rows and the controls in them. A field asks for the character of what it hides while it is made,
/// before it is of any kind.
inline constexpr QStringView settingsSheet = uR"(
QFrame[kind="group"] { background: $surface; border: 1px solid $border; border-radius: $10; }

QLineEdit { lineedit-password-character: 8226; }
QPushButton[fold="true"] { color: $ink; padding: 0 $5 0 0; }
QPushButton[fold="true"]:focus { padding: 0 $4 0 0; }
QPushButton[half] { padding: 0; }
QPushButton[half="left"] { border-top-right-radius: 0; border-bottom-right-radius: 0;
    border-right-color: $border; }
QPushButton[half="right"] { border-top-left-radius: 0; border-bottom-left-radius: 0;
    border-left-width: 0; }
QPushButton[half]:focus { border: 2px solid $accentLine; padding: 0; }

QComboBox { color: $ink; background: $surface; border: 1px solid $borderStrong; border-radius: $8;
    padding: 0 $24 0 $10; }
QComboBox:hover { background: $ink/6; }
QComboBox:focus { border: 2px solid $accentLine; padding: 0 $23 0 $9; }
QComboBox::drop-down { border: none; width: 0; }
QComboBox::down-arrow { image: none; }
QComboBox QAbstractItemView { color: $ink; background: $surface; border: 1px solid $border;
    selection-background-color: $select; selection-color: $ink; outline: 0; }
QComboBox QAbstractItemView::item { min-height: $28; padding: 0 $10; }

QSlider::groove:horizontal { background: transparent; height: $4; }
QSlider::handle:horizontal { background: transparent; width: $16; margin: -$6 0; }

QListView[kind="choices"] { color: $ink; background: $surface; border: 1px solid $borderStrong;
    border-radius: $8; outline: 0; padding: $4; }
QListView[kind="choices"]:focus { border: 2px solid $accentLine; padding: $3; }
QListView[kind="choices"]::item { min-height: $30; border-radius: $6; padding: 0 $6; }
QListView[kind="choices"]::item:selected { background: $select; color: $ink; }
)";

} // namespace nimbrelle
