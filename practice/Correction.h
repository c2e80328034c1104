#pragma once

#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// The word meant by a text with a slip or two in it, or null. Short texts and words of the known sentences
/// are never "corrected".
const Value *correctionOf(const Lexicon &lexicon, std::string_view typed);

} // namespace nimbrelle::practice
