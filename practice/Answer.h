#pragma once

#include "practice/ChatRequest.h"
#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// The content of the answer: text for a conversation, else a JSON object with the members that the system
/// text demands. Absent when it demands none of those that are known here.
std::optional<std::string> answerTo(const Lexicon &lexicon, const ChatRequest &request);

} // namespace nimbrelle::practice
