#pragma once

#include "practice/Explain.h"

namespace nimbrelle::practice {

struct LookupAnswer {
    WordAnswer word;
    std::string aboutZh;
    bool corrected = false;
    std::vector<Alternative> alternatives;
};

/// English in any form and with a slip or two, a name, or Chinese that wants its English.
LookupAnswer lookUp(const Lexicon &lexicon, std::string_view query);

} // namespace nimbrelle::practice
