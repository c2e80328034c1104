#pragma once

#include <QStringView>

namespace nimbrelle {

/// The windows of a conversation.
inline constexpr QStringView talkSheet = uR"(
QTextEdit[kind="talkField"] { color: $ink; background: $surface; border: 1px solid $borderStrong;
    border-radius: $8; padding: 1px; selection-background-color: $select; selection-color: $ink; }
QTextEdit[kind="talkField"]:focus { border: 2px solid $accentLine; padding: 0; }
QScrollArea[kind="talkList"] { border: 2px solid transparent; }
QScrollArea[kind="talkList"]:focus { border: 2px solid $accentLine; }
QPushButton[kind="send"] { background: transparent; border: 2px solid transparent; padding: 0;
    border-radius: $15; }
QPushButton[kind="send"]:focus { border: 2px solid $accentLine; padding: 0; }
)";

} // namespace nimbrelle
