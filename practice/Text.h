#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// UTF-8 text as the practice provider needs it: English words with their places, Han letters, trimming.
namespace nimbrelle::practice {

/// A word of a text. An apostrophe stays inside; a hyphen and any other punctuation divide.
struct Word {
    std::string folded; ///< ASCII lower case, with "’" written as "'"
    size_t begin = 0; ///< byte offsets into the text, end exclusive
    size_t end = 0;
};

std::vector<Word> wordsOf(std::string_view text);

/// The words of `text`, folded and joined by single blanks: what two spellings of one phrase have in common.
std::string matchKey(std::string_view text);

/// The part of `text` from the first through the last of `words`.
std::string_view textOf(std::string_view text, std::span<const Word> words);

std::string foldedAscii(std::string_view text);
std::string_view trimmed(std::string_view text);
/// Runs of white space become one blank; none stays at the ends.
std::string collapsed(std::string_view text);
/// Without the ASCII punctuation and the white space at both ends.
std::string_view withoutEdgePunctuation(std::string_view text);

std::vector<std::string_view> split(std::string_view text, std::string_view separator);
std::string joined(std::span<const std::string> parts, std::string_view separator);

std::u32string codePoints(std::string_view utf8);
std::string utf8(std::u32string_view codePoints);
bool isHan(char32_t c);
bool containsHan(std::string_view text);
size_t codePointCount(std::string_view text);
std::string firstCodePoints(std::string_view text, size_t count);

} // namespace nimbrelle::practice
