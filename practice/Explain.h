#pragma once

#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// The explain contract. The selection may hold line breaks; the context may be empty.
JsonObject explain(const Lexicon &lexicon, std::string_view selection, std::string_view context);

/// What holds for a word wherever it is met; the sense tells the part of speech.
JsonObject describe(const Value &entry, const Value &sense);
/// The honest answer about a word that the lexicon lacks.
JsonObject describeUnknown(std::string_view text);
/// Adds a sentence of the lexicon's as an example.
JsonObject &addExample(JsonObject &answer, const Value &sentence);

} // namespace nimbrelle::practice
