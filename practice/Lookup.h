#pragma once

#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// The lookup contract: English in any form and with a slip or two, a name, or Chinese that wants its
/// English.
JsonObject lookUp(const Lexicon &lexicon, std::string_view query);

} // namespace nimbrelle::practice
