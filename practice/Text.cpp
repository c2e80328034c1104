#include "practice/Text.h"

#include <algorithm>
#include <cctype>

namespace nimbrelle::practice {

static constexpr std::string_view whiteSpace = " \t\r\n\f\v";

static bool isAsciiLetterOrDigit(char32_t c)
{
    return c < 0x80 && std::isalnum(static_cast<int>(c)) != 0;
}

static bool isWordCharacter(char32_t c)
{
    const bool latin = c >= 0xC0 && c <= 0x24F && c != 0xD7 && c != 0xF7;
    return isAsciiLetterOrDigit(c) || latin;
}

static bool isApostrophe(char32_t c)
{
    return c == U'\'' || c == U'’';
}

static size_t lengthOfSequence(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xF0)
        return 4;
    return lead >= 0xE0 ? 3 : 2;
}

/// The code point at `at`, which is moved behind it. Malformed bytes come out as U+FFFD, one at a time.
static char32_t next(std::string_view text, size_t &at)
{
    const auto lead = static_cast<unsigned char>(text[at]);
    const size_t length = lengthOfSequence(lead);
    if (length == 1 || lead < 0xC2 || at + length > text.size()) {
        ++at;
        return lead < 0x80 ? lead : U'\uFFFD';
    }
    char32_t c = lead & (0x7Fu >> length);
    for (size_t i = 1; i < length; ++i)
        c = (c << 6) | (static_cast<unsigned char>(text[at + i]) & 0x3Fu);
    at += length;
    return c;
}

static void append(std::string &out, char32_t c)
{
    const auto byte = [&out](char32_t value) { out.push_back(static_cast<char>(value)); };
    if (c < 0x80) {
        byte(c);
    } else if (c < 0x800) {
        byte(0xC0 | (c >> 6));
        byte(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        byte(0xE0 | (c >> 12));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    } else {
        byte(0xF0 | (c >> 18));
        byte(0x80 | ((c >> 12) & 0x3F));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    }
}

static bool continuesWord(std::string_view text, size_t at)
{
    return at < text.size() && isWordCharacter(next(text, at));
}

std::vector<Word> wordsOf(std::string_view text)
{
    std::vector<Word> words;
    bool inside = false;
    for (size_t at = 0; at < text.size();) {
        const size_t begin = at;
        const char32_t c = next(text, at);
        const bool joins = isWordCharacter(c) || (inside && isApostrophe(c) && continuesWord(text, at));
        if (joins && !inside)
            words.push_back({{}, begin, begin});
        if (joins) {
            append(words.back().folded, isApostrophe(c) ? U'\'' : c);
            words.back().end = at;
        }
        inside = joins;
    }
    for (Word &word : words)
        word.folded = foldedAscii(word.folded);
    return words;
}

std::string matchKey(std::string_view text)
{
    std::string key;
    for (const Word &word : wordsOf(text))
        key += (key.empty() ? "" : " ") + word.folded;
    return key;
}

std::string_view textOf(std::string_view text, std::span<const Word> words)
{
    return words.empty() ? std::string_view()
                         : text.substr(words.front().begin, words.back().end - words.front().begin);
}

std::string foldedAscii(std::string_view text)
{
    std::string folded(text);
    for (char &c : folded) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return folded;
}

static std::string_view trimmedOf(std::string_view text, std::string_view unwanted)
{
    const size_t begin = text.find_first_not_of(unwanted);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(unwanted) - begin + 1);
}

std::string_view trimmed(std::string_view text)
{
    return trimmedOf(text, whiteSpace);
}

std::string collapsed(std::string_view text)
{
    std::string out;
    for (const char c : trimmed(text)) {
        const bool blank = whiteSpace.find(c) != std::string_view::npos;
        if (!blank)
            out.push_back(c);
        else if (out.back() != ' ')
            out.push_back(' ');
    }
    return out;
}

std::string_view withoutEdgePunctuation(std::string_view text)
{
    return trimmedOf(text, " \t\r\n\f\v.,;:!?\"'()[]{}<>*_~`|");
}

std::vector<std::string_view> split(std::string_view text, std::string_view separator)
{
    std::vector<std::string_view> parts;
    for (size_t at; (at = text.find(separator)) != std::string_view::npos;) {
        parts.push_back(text.substr(0, at));
        text.remove_prefix(at + separator.size());
    }
    parts.push_back(text);
    return parts;
}

std::string joined(std::span<const std::string> parts, std::string_view separator)
{
    std::string out;
    for (const std::string &part : parts) {
        if (&part != &parts.front())
            out += separator;
        out += part;
    }
    return out;
}

std::u32string codePoints(std::string_view utf8)
{
    std::u32string out;
    for (size_t at = 0; at < utf8.size();)
        out.push_back(next(utf8, at));
    return out;
}

std::string utf8(std::u32string_view codePoints)
{
    std::string out;
    for (const char32_t c : codePoints)
        append(out, c);
    return out;
}

bool isHan(char32_t c)
{
    return (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0x3400 && c <= 0x4DBF) || (c >= 0x20000 && c <= 0x323AF);
}

bool containsHan(std::string_view text)
{
    return std::ranges::any_of(codePoints(text), isHan);
}

size_t codePointCount(std::string_view text)
{
    return codePoints(text).size();
}

std::string firstCodePoints(std::string_view text, size_t count)
{
    return utf8(codePoints(text).substr(0, count));
}

} // namespace nimbrelle::practice
