#pragma once

#include "practice/ChatRequest.h"
#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// The answer to a free question, the coach's or a teacher's, from what is known of the words in it. It says
/// what answers here.
std::string converse(const Lexicon &lexicon, const ChatRequest &request);

} // namespace nimbrelle::practice
