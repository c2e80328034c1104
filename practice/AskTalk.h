#pragma once

#include "practice/ChatRequest.h"
#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// What a conversation about a text is about; all empty when it names none.
struct AskSubject {
    std::string original;
    std::string focusWord;
};

AskSubject readAskSubject(const ChatRequest &request);

/// Answers from the known words of the text and of the question.
std::string askTalk(const Lexicon &lexicon, const ChatRequest &request);

} // namespace nimbrelle::practice
