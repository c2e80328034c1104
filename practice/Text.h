#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// UTF-8 text as the practice provider needs it: English words with their places, and where to cut.
namespace nimbrelle::practice {

/// A word of a text. An apostrophe stays inside; a hyphen, any other punctuation and Han letters divide.
struct Word {
    std::string folded; ///< without case, and with "’" written as "'"
    size_t begin = 0; ///< byte offsets into the text, end exclusive
    size_t end = 0;
};

std::vector<Word> wordsOf(std::string_view text);

/// The folded words joined by single blanks: what two spellings of one phrase have in common.
std::string keyOf(std::span<const Word> words);
std::string keyOf(std::string_view text);
/// Whether the words of one key stand next to each other in another.
bool keyHolds(std::string_view key, std::string_view part);

/// The part of `text` from the first through the last of `words`.
std::string_view textOf(std::string_view text, std::span<const Word> words);

bool containsHan(std::string_view text);
/// `text` up to its first Han letter or full-width mark.
std::string_view beforeHan(std::string_view text);

inline constexpr std::string_view whiteSpace = " \t\r\n\f\v";
std::string_view trimmed(std::string_view text, std::string_view unwanted = whiteSpace);
/// Runs of white space become one blank; none stays at the ends.
std::string collapsed(std::string_view text);

/// The sentences of a text, which together are the text.
std::vector<std::string_view> sentencesOf(std::string_view text);
/// `text` in small pieces as a streaming provider sends it. No character is ever divided, and the pieces
/// together are the text.
std::vector<std::string> piecesOf(std::string_view text);

} // namespace nimbrelle::practice
