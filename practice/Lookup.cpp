#include "practice/Lookup.h"

#include <algorithm>

namespace nimbrelle::practice {

static constexpr size_t mostAlternatives = 3;

static LookupAnswer answerWith(const Entry &entry)
{
    LookupAnswer answer{describe(entry, entry.usualSense()), entry.noteZh, false, {}};
    answer.word.sentence = entry.examples.front().en;
    answer.word.sentenceZh = entry.examples.front().zh;
    answer.word.surfaceForm = entry.headword;
    return answer;
}

static LookupAnswer answerUnknown(std::string_view query)
{
    return {describeUnknown(query), "内置的练习词库里没有它。在设置里填上自己的 API key，就能查到任何词。",
        false, {}};
}

static LookupAnswer lookUpChinese(const Lexicon &lexicon, std::string_view query)
{
    const std::vector<const Entry *> found = lexicon.byMeaning(query);
    if (found.empty())
        return answerUnknown(query);
    LookupAnswer answer = answerWith(*found.front());
    answer.alternatives = found.front()->alternatives;
    for (size_t i = 1; i < found.size() && answer.alternatives.size() < mostAlternatives; ++i) {
        const auto same = [&](const Alternative &other) { return other.text == found[i]->headword; };
        if (std::ranges::none_of(answer.alternatives, same))
            answer.alternatives.push_back({found[i]->headword, found[i]->usualSense().meaningZh});
    }
    return answer;
}

LookupAnswer lookUp(const Lexicon &lexicon, std::string_view query)
{
    if (containsHan(query))
        return lookUpChinese(lexicon, query);
    if (const Entry *entry = lexicon.entryOf(query))
        return answerWith(*entry);
    const Entry *meant = lexicon.correctionOf(query);
    if (!meant)
        return answerUnknown(query);
    LookupAnswer answer = answerWith(*meant);
    answer.corrected = true;
    return answer;
}

} // namespace nimbrelle::practice
