#include "practice/Text.h"

#include <memory>
#include <sstream>
#include <stdexcept>
#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uscript.h>
#include <unicode/utf8.h>

namespace nimbrelle::practice {

namespace {

bool isHan(UChar32 c)
{
    UErrorCode status = U_ZERO_ERROR;
    return uscript_getScript(c, &status) == USCRIPT_HAN;
}

bool isLetter(UChar32 c)
{
    return u_isalnum(c) && !isHan(c);
}

bool isApostrophe(UChar32 c)
{
    return c == U'\'' || c == U'’';
}

/// The character at `at`, which is moved behind it; negative behind the end and for malformed bytes.
UChar32 next(std::string_view text, size_t &at)
{
    UChar32 c = U_SENTINEL;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion" // in the macro
    if (at < text.size())
        U8_NEXT(text.data(), at, text.size(), c);
#pragma GCC diagnostic pop
    return c;
}

std::string folded(std::string_view text)
{
    std::string out;
    icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())})
        .findAndReplace(u"’", u"'")
        .foldCase()
        .toUTF8String(out);
    return out;
}

} // namespace

std::vector<Word> wordsOf(std::string_view text)
{
    std::vector<Word> words;
    bool inside = false;
    for (size_t at = 0; at < text.size();) {
        const size_t begin = at;
        const UChar32 c = next(text, at);
        size_t ahead = at;
        inside = isLetter(c) || (inside && isApostrophe(c) && isLetter(next(text, ahead)));
        const bool continues = inside && !words.empty() && words.back().end == begin;
        if (inside && !continues)
            words.push_back({.folded = {}, .begin = begin, .end = begin});
        if (inside)
            words.back().end = at;
    }
    for (Word &word : words)
        word.folded = folded(text.substr(word.begin, word.end - word.begin));
    return words;
}

std::string keyOf(std::span<const Word> words)
{
    std::string key;
    for (const Word &word : words)
        key += (key.empty() ? "" : " ") + word.folded;
    return key;
}

std::string keyOf(std::string_view text)
{
    return keyOf(wordsOf(text));
}

bool keyHolds(std::string_view key, std::string_view part)
{
    const auto fenced = [](std::string_view words) { return " " + std::string(words) + " "; };
    return fenced(key).find(fenced(part)) != std::string::npos;
}

std::string_view textOf(std::string_view text, std::span<const Word> words)
{
    return words.empty() ? std::string_view()
                         : text.substr(words.front().begin, words.back().end - words.front().begin);
}

bool containsHan(std::string_view text)
{
    for (size_t at = 0; at < text.size();) {
        if (isHan(next(text, at)))
            return true;
    }
    return false;
}

std::string_view beforeHan(std::string_view text)
{
    constexpr UChar32 firstOfCjk = 0x2E80;
    size_t end = 0;
    for (size_t at = 0; at < text.size() && next(text, at) < firstOfCjk;)
        end = at;
    return text.substr(0, end);
}

std::string_view trimmed(std::string_view text, std::string_view unwanted)
{
    const size_t begin = text.find_first_not_of(unwanted);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(unwanted) - begin + 1);
}

std::string collapsed(std::string_view text)
{
    std::istringstream in{std::string(text)};
    std::string out;
    for (std::string part; in >> part;)
        out += (out.empty() ? "" : " ") + part;
    return out;
}

using Rules = std::unique_ptr<icu::BreakIterator>;

namespace {

Rules rulesOf(icu::BreakIterator *(*make)(const icu::Locale &, UErrorCode &))
{
    UErrorCode status = U_ZERO_ERROR;
    Rules rules(make(icu::Locale("en@ss=standard"), status)); // knows that "e.g." ends no sentence
    if (U_FAILURE(status))
        throw std::runtime_error(u_errorName(status));
    return rules;
}

std::vector<std::string_view> cut(icu::BreakIterator &rules, std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::LocalUTextPointer opened(
        utext_openUTF8(nullptr, text.data(), static_cast<int64_t>(text.size()), &status));
    rules.setText(opened.getAlias(), status);
    std::vector<std::string_view> parts;
    for (int32_t begin = 0, end = rules.next(); end > 0; begin = end, end = rules.next())
        parts.push_back(text.substr(static_cast<size_t>(begin), static_cast<size_t>(end - begin)));
    return parts;
}

} // namespace

std::vector<std::string_view> sentencesOf(std::string_view text)
{
    static thread_local const Rules rules = rulesOf(icu::BreakIterator::createSentenceInstance);
    return cut(*rules, text);
}

std::vector<std::string> piecesOf(std::string_view text)
{
    constexpr size_t cutsOfPiece = 3; // a cut is behind a Han letter or an English word, with its marks
    static thread_local const Rules rules = rulesOf(icu::BreakIterator::createLineInstance);
    std::vector<std::string> pieces;
    size_t cuts = 0;
    for (const std::string_view part : cut(*rules, text)) {
        if (cuts++ % cutsOfPiece == 0)
            pieces.emplace_back();
        pieces.back() += part;
    }
    return pieces;
}

} // namespace nimbrelle::practice
