#pragma once

#include <QStringView>

namespace nimbrelle {

/// The notebook and the window in which a word is added.
inline constexpr QStringView notebookSheet = uR"(
QLabel[kind="keycap"] { color: $primaryText/80; background: transparent;
    border: 1px solid $primaryText/50; border-radius: $4; padding: 0 $4; }
QPushButton[kind="primary"][hasKey="true"] { text-align: left; }
QLineEdit[kind="field"][shape="large"] { border-radius: $10; }

QFrame[kind="detail"] { background: $surface; }
QScrollArea[kind="reading"] { border: 2px solid transparent; }
QScrollArea[kind="reading"]:focus { border: 2px solid $accentLine; }
QFrame[kind="segments"] { background: $sunken; border-radius: $8; }
QPushButton[kind="segment"] { color: $ink2; background: transparent; border: 1px solid transparent;
    border-radius: $8; padding: 0; }
QPushButton[kind="segment"]:hover { color: $ink; }
QPushButton[kind="segment"]:checked { color: $ink; background: $surface; border-color: $border; }
QPushButton[kind="segment"]:focus { border: 2px solid $accentLine; padding: 0; }
QPushButton[kind="soft"][shape="square"], QPushButton[kind="soft"][shape="square"]:focus { padding: 0; }
QLineEdit[kind="field"][shape="search"] { border-color: $border; }
QLineEdit[kind="field"][shape="search"]:focus { border: 2px solid $accentLine; }

QListView[kind="notebook"] { background: transparent; border: none; outline: none; padding: 0; }
QFrame[kind="stageBar"] { background: $paper; border: 1px solid $border; border-radius: $8; }
QFrame[kind="cell"] { background: $surface; border: 1px solid $border; border-radius: $8; }
QFrame[kind="lockedCell"] { background: $sunken; border: 1px solid $sunken; border-radius: $8; }
)";

} // namespace nimbrelle
