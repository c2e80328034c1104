#pragma once

#include <QStringView>

namespace nimbrelle {

/// The controls that every screen has. In all sheets $name is a colour of the theme, $name/50 the colour at a
/// half, $12 a length in points. What is typed into takes the colours of its text from the palette: a colour
/// given here would put a fainter one of its own in the place of the placeholder's.
inline constexpr QStringView controlsSheet = uR"(
QToolTip { color: $ink; background: $surface; border: 1px solid $border; padding: $4; }
QMenu { color: $ink; background: $surface; border: 1px solid $border; padding: $4; }
QMenu::item { padding: $4 $14; border-radius: $6; }
QMenu::item:selected { background: $select; color: $ink; }

QPushButton { color: $ink; background: $surface; border: 1px solid $borderStrong; border-radius: $8;
    padding: 0 $10; }
QPushButton:hover { background: $ink/6; }
QPushButton:pressed { background: $ink/12; }
QPushButton:disabled { color: $ink/45; }
QPushButton[kind="primary"] { color: $primaryText; background: $primaryFill; border-color: $primaryFill; }
QPushButton[kind="primary"]:hover { background: $primaryFill/88; }
QPushButton[kind="primary"]:disabled { color: $primaryText/45; }
QPushButton[kind="soft"] { border-color: $border; }
QPushButton[quiet="true"] { color: $ink2; }
QPushButton[kind="chip"] { background: $ink/7; border: 1px solid transparent; border-radius: $13; }
QPushButton[kind="chip"]:hover { background: $ink/12; }
QPushButton[kind="dockChip"] { background: transparent; border-color: $border; border-radius: $13; }
QPushButton[kind="dockChip"]:hover { background: $ink/6; }
QPushButton[kind="link"] { color: $accent; background: transparent; border: 1px solid transparent;
    padding: 0; text-align: left; }
QPushButton[kind="link"]:hover { text-decoration: underline; }
QPushButton[kind="plain"] { color: $ink2; background: transparent; border: 1px solid transparent;
    padding: 0; text-align: left; }
QPushButton[kind="plain"]:hover { color: $ink; }
QPushButton[kind="icon"] { background: transparent; border: 1px solid transparent; padding: 0;
    border-radius: $8; }
QPushButton[kind="icon"]:hover { background: $ink/7; }
QPushButton[kind="offer"] { color: $accent; background: transparent; border: none; padding: 0;
    border-radius: $15; }
QPushButton[kind="offer"]:hover { background: $select; }
QPushButton:focus { border: 2px solid $accentLine; padding: 0 $9; }
QPushButton[kind="link"]:focus, QPushButton[kind="plain"]:focus, QPushButton[kind="icon"]:focus {
    padding: 0; }

QLabel[tint] { border-radius: $10; padding: 0 $8; }
QLabel[kind="chip"] { background: $ink/7; border-radius: $10; padding: 0 $8; }
QFrame[kind="slip"] { background: $sunken; border-radius: $8; }
QFrame[kind="banner"] { background: $leaf/8; border-radius: $6; }
QFrame[kind="bubble"] { background: $leaf/18; border-radius: $10; }
QFrame[kind="line"] { background: $border; }
QFrame[kind="rule"] { background: $border; }

QScrollArea, QScrollArea > QWidget > QWidget[kind="scrolled"] { background: transparent; border: none; }
QScrollBar:vertical { background: transparent; width: $8; margin: 0; }
QScrollBar::handle:vertical { background: $borderStrong/60; border-radius: $3; min-height: $28;
    margin: 1px; }
QScrollBar:horizontal { background: transparent; height: $8; margin: 0; }
QScrollBar::handle:horizontal { background: $borderStrong/60; border-radius: $3; min-width: $28;
    margin: 1px; }
QScrollBar::add-line:horizontal, QScrollBar::sub-line:horizontal { width: 0; }
QScrollBar::add-line, QScrollBar::sub-line, QScrollBar::add-page, QScrollBar::sub-page {
    background: transparent; height: 0; }

QLineEdit[kind="field"] { background: $surface; border: 1px solid $borderStrong;
    border-radius: $8; padding: 0 $10; selection-background-color: $select; selection-color: $ink; }
QLineEdit[kind="field"]:focus { border: 2px solid $accentLine; padding: 0 $9; }
)";

} // namespace nimbrelle
