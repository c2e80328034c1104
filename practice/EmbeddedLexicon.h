#pragma once

#include <string_view>
#include <vector>

/// The JSON files of practice/lexicon, put into the program by the build.
namespace nimbrelle::practice {

std::vector<std::string_view> embeddedWordFiles();
std::string_view embeddedSentences();

} // namespace nimbrelle::practice
