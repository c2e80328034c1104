#pragma once

#include <cstddef>
#include <string_view>

namespace nimbrelle::practice {

/// Insertions, deletions, substitutions and swaps of neighbours that turn one text into the other
/// (the restricted Damerau-Levenshtein distance), counted in bytes.
size_t editDistance(std::string_view a, std::string_view b);

} // namespace nimbrelle::practice
