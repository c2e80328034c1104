#pragma once

#include "practice/ChatRequest.h"
#include "practice/LexiconReader.h"

namespace nimbrelle::practice {

/// The words that the program carries, read once for all tests.
inline const Lexicon &practiceLexicon()
{
    static const auto lexicon = embeddedLexicon();
    return *lexicon;
}

inline ChatRequest contractRequest(std::string system, std::string user)
{
    return {{{"system", std::move(system)}, {"user", std::move(user)}}, false, true};
}

} // namespace nimbrelle::practice
