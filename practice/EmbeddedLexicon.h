#pragma once

#include <string_view>

namespace nimbrelle::practice {

/// A JSON file of practice/lexicon, put into the program by the build; `name` is without its ending.
std::string_view embeddedFile(std::string_view name);

} // namespace nimbrelle::practice
