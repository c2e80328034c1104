#pragma once

#include "practice/Lexicon.h"

#include <optional>

namespace nimbrelle::practice {

/// Where marked words stand.
struct Place {
    std::string sentence;
    std::string surface; ///< the marked words as the sentence has them
    const Value *known = nullptr; ///< the sentence in the lexicon; null for a sentence of elsewhere
};

/// The real sentence of `text` that holds the words next to each other. Where several do, it is the one
/// nearest the middle, for a selection is sent with as much text behind it as before it.
std::optional<Place> placeIn(const Lexicon &lexicon, std::string_view text, std::span<const Word> marked);

/// False for labels, user names, counters and the like.
bool looksLikeSentence(std::string_view text);

} // namespace nimbrelle::practice
