#pragma once

#include "practice/ChatRequest.h"
#include "practice/Lexicon.h"

namespace nimbrelle::practice {

enum class Contract { explain, lookup, translate, mnemonic, conversation };

/// Told by the system prompt, and where that is another's, by the form of the user's message.
Contract contractOf(const ChatRequest &request);

/// The content of the answer: a JSON object for the contracts, text for a conversation.
std::string answerContent(const Lexicon &lexicon, const ChatRequest &request);

} // namespace nimbrelle::practice
