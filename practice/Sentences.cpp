#include "practice/Sentences.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace nimbrelle::practice {

namespace {

bool runsOn(std::string_view line, std::string_view next)
{
    constexpr size_t shortestWrapped = 30;
    if (line.empty() || next.empty()
        || std::string_view(".!?:\"").find(line.back()) != std::string_view::npos)
        return false;
    return line.size() >= shortestWrapped || std::islower(static_cast<unsigned char>(next.front())) != 0;
}

/// The same text, with a blank for each line break inside a sentence.
std::string unwrapped(std::string_view text)
{
    std::string out(text);
    size_t begin = 0;
    for (size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', begin)) {
        const std::string_view next = text.substr(end + 1, text.find('\n', end + 1) - end - 1);
        if (runsOn(trimmed(text.substr(begin, end - begin)), trimmed(next)))
            out[end] = ' ';
        begin = end + 1;
    }
    return out;
}

} // namespace

bool looksLikeSentence(std::string_view text)
{
    static const std::set<std::string, std::less<>> common = {"a", "an", "the", "i", "i'm", "you", "he",
        "she", "it", "it's", "we", "they", "this", "that", "is", "are", "was", "were", "be", "been", "do",
        "does", "did", "don't", "has", "have", "had", "will", "can", "can't", "of", "to", "in", "on", "for",
        "with", "at", "and", "but", "or", "not", "no", "my", "your", "his", "her", "our", "their", "its",
        "if", "when", "what", "how"};
    const std::vector<Word> words = wordsOf(text);
    const auto isCommon = [](const Word &word) { return common.contains(word.folded); };
    const std::string_view end = trimmed(text);
    return words.size() > 2
        && (std::ranges::any_of(words, isCommon)
            || std::string_view(".!?\"").find(end.back()) != std::string_view::npos);
}

namespace {

/// The indices of the words where `marked` begins, those nearest the middle of the text first.
std::vector<size_t> occurrences(
    std::span<const Word> words, std::span<const Word> marked, std::string_view text)
{
    std::vector<size_t> found;
    for (size_t i = 0; !marked.empty() && i + marked.size() <= words.size(); ++i) {
        if (std::ranges::equal(words.subspan(i, marked.size()), marked, {}, &Word::folded, &Word::folded))
            found.push_back(i);
    }
    const auto middle = static_cast<std::ptrdiff_t>(text.size() / 2);
    std::ranges::stable_sort(
        found, {}, [&](size_t i) { return std::abs(static_cast<std::ptrdiff_t>(words[i].begin) - middle); });
    return found;
}

std::optional<Place> placeAt(std::string_view text, std::span<const Word> marked)
{
    size_t begin = 0;
    for (const std::string_view sentence : sentencesOf(text)) {
        begin += sentence.size();
        if (marked.front().begin < begin) {
            if (marked.back().end > begin || !looksLikeSentence(sentence))
                return std::nullopt;
            return Place{.sentence = collapsed(sentence), .surface = collapsed(textOf(text, marked))};
        }
    }
    return std::nullopt;
}

Place knownPlace(const Value &sentence, size_t begin, size_t count)
{
    const std::string_view text = textAt(sentence, "en");
    const std::vector<Word> words = wordsOf(text);
    const std::string_view surface = textOf(text, std::span(words).subspan(begin, count));
    return {.sentence = std::string(text), .surface = std::string(surface), .known = &sentence};
}

} // namespace

std::optional<Place> placeIn(const Lexicon &lexicon, std::string_view text, std::span<const Word> marked)
{
    const std::string flat = unwrapped(text);
    const std::vector<Word> words = wordsOf(flat);
    const std::vector<Match> known = lexicon.sentencesIn(words);
    for (const size_t at : occurrences(words, marked, flat)) {
        for (const Match &match : known) {
            if (match.begin <= at && at + marked.size() <= match.end)
                return knownPlace(*match.of, at - match.begin, marked.size());
        }
        if (auto place = placeAt(flat, std::span(words).subspan(at, marked.size())))
            return place;
    }
    return std::nullopt;
}

} // namespace nimbrelle::practice
