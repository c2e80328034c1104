#pragma once

#include "practice/ChatRequest.h"
#include "practice/Lexicon.h"

namespace nimbrelle::practice {

struct SavedWord {
    std::string word;
    std::string meaningZh;
    std::string place; ///< where it was met; empty when the record does not say
};

struct ForgottenWord {
    std::string word;
    std::string meaningZh;
    size_t times = 0;
};

/// The facts of the learner's record that the practice coach can speak of.
struct CoachRecord {
    std::vector<SavedWord> saved; ///< newest first
    std::vector<ForgottenWord> forgotten;
    std::vector<std::string> remembered;
    std::optional<size_t> nextQuestions;
};

CoachRecord readCoachRecord(std::string_view text);

/// The daily briefing, or the answer to what the learner said, made of facts of the record alone.
std::string coachTalk(const Lexicon &lexicon, const ChatRequest &request);

} // namespace nimbrelle::practice
