#pragma once

#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// The translate contract. Known sentences are translated; of any other text the known words are glossed in
/// place, marked as practice.
JsonObject translate(const Lexicon &lexicon, std::string_view text);

} // namespace nimbrelle::practice
