#include "practice/Gloss.h"

#include "practice/Sentences.h"

#include <algorithm>

namespace nimbrelle::practice {

static constexpr size_t mostKeyTerms = 4;

static std::string_view surfaceOf(std::string_view text, std::span<const Word> words, const FormMatch &match)
{
    return textOf(text, words.subspan(match.begin, match.end - match.begin));
}

std::vector<KeyTerm> keyTermsOf(const Lexicon &lexicon, std::string_view text, size_t most)
{
    const std::vector<Word> words = wordsOf(text);
    std::vector<FormMatch> matches = lexicon.matchesIn(words);
    const bool onlyBasic =
        std::ranges::all_of(matches, [](const FormMatch &match) { return match.entry->isBasic; });
    std::vector<const Entry *> seen;
    std::vector<KeyTerm> terms;
    for (const FormMatch &match : matches) {
        const bool wanted = onlyBasic || !match.entry->isBasic;
        if (!wanted || std::ranges::find(seen, match.entry) != seen.end() || terms.size() == most)
            continue;
        seen.push_back(match.entry);
        terms.push_back({std::string(surfaceOf(text, words, match)), match.entry->usualSense().meaningZh});
    }
    return terms;
}

/// The sentence with the meaning of each known word put behind it, or empty when no word is known.
static std::string glossed(const Lexicon &lexicon, const std::string &sentence)
{
    const std::vector<Word> words = wordsOf(sentence);
    std::string out;
    size_t written = 0;
    for (const FormMatch &match : lexicon.matchesIn(words)) {
        const size_t end = words[match.end - 1].end;
        out += sentence.substr(written, end - written) + "〔" + match.entry->usualSense().meaningZh + "〕";
        written = end;
    }
    return out.empty() ? out : out + sentence.substr(written);
}

TranslationAnswer translate(const Lexicon &lexicon, std::string_view text)
{
    bool whole = true;
    bool anything = false;
    std::string zh;
    for (const std::string &sentence : sentencesOf(text)) {
        std::string part = lexicon.translationOf(sentence).value_or("");
        if (part.empty()) {
            whole = false;
            part = glossed(lexicon, sentence);
        }
        anything = anything || !part.empty();
        const std::string_view gap = zh.empty() || whole ? "" : " ";
        zh.append(gap).append(part.empty() ? sentence : part);
    }
    if (!anything)
        zh = "（练习模式没有这段的译文，词库里也没有其中的词。填上自己的 API key，这里就是整段的翻译。）";
    else if (!whole)
        zh = "（练习模式，不是完整翻译，只标出认得的词）\n" + zh;
    return {zh, keyTermsOf(lexicon, text, mostKeyTerms)};
}

} // namespace nimbrelle::practice
