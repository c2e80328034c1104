#pragma once

#include <QString>

/// The fixed texts of the coach's conversation.
namespace nimbrelle::prompts {

/// Who the coach is and how it talks: the system text of briefing and chat.
const QString &coach();
/// What a briefing has to be; it follows the record and begins with an empty line.
const QString &briefingTask();

} // namespace nimbrelle::prompts
