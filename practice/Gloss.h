#pragma once

#include "practice/Lexicon.h"

namespace nimbrelle::practice {

struct KeyTerm {
    std::string text; ///< exactly as it stands in the text
    std::string meaningZh;
};

struct TranslationAnswer {
    std::string translationZh;
    std::vector<KeyTerm> keyTerms;
};

/// The translation of sentences written for this project; of any other text the known words glossed in place,
/// marked as practice.
TranslationAnswer translate(const Lexicon &lexicon, std::string_view text);

/// Up to `most` known words of a text that are worth learning, in the order of the text.
std::vector<KeyTerm> keyTermsOf(const Lexicon &lexicon, std::string_view text, size_t most);

} // namespace nimbrelle::practice
