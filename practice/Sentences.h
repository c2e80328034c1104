#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Finding the one sentence round a marked word in a text that may be full of buttons and counters.
namespace nimbrelle::practice {

/// The sentences of a text, white space collapsed. A line that runs on is joined with the next.
std::vector<std::string> sentencesOf(std::string_view text);

/// False for labels, user names, counters and the like.
bool looksLikeSentence(std::string_view text);

struct FoundSentence {
    std::string text;
    size_t wordBegin = 0; ///< where the looked-for words stand, counted in words of `text`
};

/// The first real sentence of `text` that holds `words` next to each other, in any case.
std::optional<FoundSentence> sentenceWith(std::string_view text, std::string_view words);

} // namespace nimbrelle::practice
