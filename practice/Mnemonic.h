#pragma once

#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// The mnemonic contract: up to three lines for the first English word or phrase of the message.
JsonObject mnemonic(const Lexicon &lexicon, std::string_view message);

std::string tipOnOneLine(const Lexicon &lexicon, std::string_view word);

} // namespace nimbrelle::practice
