#pragma once

#include "practice/Lexicon.h"

#include <memory>
#include <stdexcept>

/// From the JSON of the word files to a Lexicon.
namespace nimbrelle::practice {

/// A word file that breaks its form; names the word.
struct LexiconError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::vector<Entry> readEntries(std::string_view json);
std::vector<ExampleSentence> readSentences(std::string_view json);

/// The words that the program carries with it.
std::unique_ptr<const Lexicon> embeddedLexicon();

} // namespace nimbrelle::practice
