#include "practice/Sentences.h"

#include "practice/Text.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace nimbrelle::practice {

static constexpr size_t shortestWrappedLine = 30;

static bool endsSentence(std::string_view line)
{
    return !line.empty() && std::string_view(".!?:\"").find(line.back()) != std::string_view::npos;
}

static bool runsOn(std::string_view line, std::string_view next)
{
    if (line.empty() || next.empty() || endsSentence(line))
        return false;
    return line.size() >= shortestWrappedLine || std::islower(static_cast<unsigned char>(next.front())) != 0;
}

static std::vector<std::string> paragraphsOf(std::string_view text)
{
    std::vector<std::string> paragraphs;
    std::string_view last;
    for (const std::string_view raw : split(text, "\n")) {
        const std::string_view line = trimmed(raw);
        if (!paragraphs.empty() && runsOn(last, line))
            paragraphs.back().append(" ").append(line);
        else if (!line.empty())
            paragraphs.emplace_back(line);
        last = line;
    }
    return paragraphs;
}

static bool isAbbreviation(std::string_view upToDot)
{
    static const std::set<std::string, std::less<>> abbreviations = {
        "e.g", "i.e", "etc", "vs", "mr", "mrs", "ms", "dr", "st", "no", "approx", "fig", "a.m", "p.m"};
    const size_t blank = upToDot.find_last_of(" (");
    const std::string_view word = blank == std::string_view::npos ? upToDot : upToDot.substr(blank + 1);
    return abbreviations.contains(foldedAscii(word));
}

/// Whether the text may be cut before the blank at `blank`.
static bool isCut(std::string_view text, size_t begin, size_t blank)
{
    size_t last = blank;
    while (last > begin && std::string_view("\"')]").find(text[last - 1]) != std::string_view::npos)
        --last;
    if (last == begin || std::string_view(".!?").find(text[last - 1]) == std::string_view::npos)
        return false;
    const std::string_view sentence = text.substr(begin, last - begin);
    const bool ellipsis = sentence.ends_with("..");
    const bool nextIsLower =
        blank + 1 < text.size() && std::islower(static_cast<unsigned char>(text[blank + 1]));
    if (ellipsis && nextIsLower)
        return false;
    return sentence.back() != '.' || !isAbbreviation(sentence.substr(0, sentence.size() - 1));
}

std::vector<std::string> sentencesOf(std::string_view text)
{
    std::vector<std::string> sentences;
    for (const std::string &paragraph : paragraphsOf(text)) {
        const std::string flat = collapsed(paragraph);
        size_t begin = 0;
        for (size_t blank = flat.find(' '); blank != std::string::npos; blank = flat.find(' ', blank + 1)) {
            if (!isCut(flat, begin, blank))
                continue;
            sentences.push_back(flat.substr(begin, blank - begin));
            begin = blank + 1;
        }
        sentences.push_back(flat.substr(begin));
    }
    return sentences;
}

static bool isFunctionWord(const std::string &word)
{
    static const std::set<std::string> words = {"a", "an", "the", "i", "you", "he", "she", "it", "we", "they",
        "i'm", "it's", "that's", "don't", "can't", "this", "that", "these", "those", "is", "are", "was",
        "were", "be", "been", "am", "do", "does", "did", "has", "have", "had", "will", "would", "can",
        "could", "should", "may", "might", "must", "of", "to", "in", "on", "for", "with", "at", "by", "from",
        "as", "and", "but", "or", "not", "my", "your", "his", "her", "our", "their", "its", "me", "them",
        "us", "if", "when", "what", "who", "how", "why"};
    return words.contains(word);
}

/// What stands on buttons and beside names on a forum's page.
static bool isPageFurniture(const std::string &word)
{
    static const std::set<std::string> furniture = {"follow", "following", "followers", "chat", "joined",
        "reply", "share", "save", "report", "award", "login", "menu", "home", "settings", "search", "posts",
        "comments", "karma", "upvote", "downvote", "subscribe", "ago", "points", "view", "views", "u", "r",
        "edit", "delete", "cancel", "ok", "copy", "help", "more", "less", "next", "previous", "members",
        "online", "level", "sort"};
    const bool number = std::isdigit(static_cast<unsigned char>(word.front())) != 0;
    return number || furniture.contains(word);
}

bool looksLikeSentence(std::string_view text)
{
    const std::vector<Word> words = wordsOf(text);
    if (words.size() < 3)
        return false;
    const auto count = [&words](bool (*is)(const std::string &)) {
        return std::ranges::count_if(words, [is](const Word &word) { return is(word.folded); });
    };
    const bool hasFunctionWord = count(isFunctionWord) > 0;
    const auto tolerated = static_cast<std::ptrdiff_t>(words.size() / (hasFunctionWord ? 2 : 3));
    if (count(isPageFurniture) > tolerated)
        return false;
    const std::string_view end = trimmed(text);
    return hasFunctionWord || std::string_view(".!?\"").find(end.back()) != std::string_view::npos;
}

std::optional<FoundSentence> sentenceWith(std::string_view text, std::string_view words)
{
    const std::vector<Word> wanted = wordsOf(words);
    if (wanted.empty())
        return std::nullopt;
    for (std::string &sentence : sentencesOf(text)) {
        const std::vector<Word> all = wordsOf(sentence);
        const auto found = std::ranges::search(all, wanted, {}, &Word::folded, &Word::folded);
        if (!found.empty() && looksLikeSentence(sentence))
            return FoundSentence{std::move(sentence), static_cast<size_t>(found.begin() - all.begin())};
    }
    return std::nullopt;
}

} // namespace nimbrelle::practice
