#pragma once

#include "practice/Lexicon.h"

namespace nimbrelle::practice {

struct MnemonicQuestion {
    std::string headword;
    std::string sentence; ///< where the learner met it; empty for none
    std::string familyRoot;
    std::vector<std::string> affixes;
    std::vector<std::string> knownWords;
};

/// Absent unless the user's message has the form of a mnemonic request.
std::optional<MnemonicQuestion> readMnemonicQuestion(std::string_view message);

/// At most three lines of at most 40 characters, each led by 联想, 拆开 or 画面.
std::string tipFor(const Lexicon &lexicon, const MnemonicQuestion &question);

/// What an affix such as "un-" does to a word; empty for a text that is none of the thirty.
std::string_view meaningOfAffix(std::string_view affix);

} // namespace nimbrelle::practice
