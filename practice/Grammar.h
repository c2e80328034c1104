#pragma once

#include "practice/Lexicon.h"

/// Simple rules that read which form a word has in its sentence, and what grammar that shows.
namespace nimbrelle::practice {

/// The place of a word or phrase in a sentence.
struct Place {
    std::string_view sentence;
    std::span<const Word> words; ///< all words of the sentence
    size_t begin = 0; ///< counted in words, end exclusive
    size_t end = 0;
};

struct GrammarReading {
    FormHit hit; ///< the reading of the form that fits its place best
    std::string grammar = "none"; ///< as the explain contract names it
    std::string noteZh; ///< quotes the English words; empty for none
};

/// `hits` are the readings of the form at `place`; there is at least one.
GrammarReading readGrammar(std::span<const FormHit> hits, const Place &place);

} // namespace nimbrelle::practice
