#include "practice/Lookup.h"

#include "practice/Correction.h"
#include "practice/Explain.h"

#include <algorithm>
#include <optional>

namespace nimbrelle::practice {

namespace {

JsonObject answerWith(const Value &entry)
{
    JsonObject answer = describe(entry, entry);
    addExample(answer, listAt(entry, "examples").front());
    answer.set("about_zh", textAt(entry, "note_zh")).set("corrected", Value(false));
    return std::move(answer.set("alternatives", std::span<const JsonObject>()));
}

JsonObject answerUnknown(std::string_view query)
{
    JsonObject answer = describeUnknown(query);
    answer.set("about_zh", "内置的练习词库里没有它。在设置里填上自己的 API key，就能查到任何词。");
    return std::move(answer.set("corrected", Value(false)));
}

/// Smaller is nearer; absent when the entry's Chinese has nothing of the query.
std::optional<size_t> distanceOf(const Value &entry, std::string_view query)
{
    constexpr size_t partly = 1000;
    constexpr size_t oneLetter = 3; // in bytes
    std::optional<size_t> distance;
    const auto keys = listAt(entry, "chinese");
    for (size_t i = 0; i < keys.size(); ++i) {
        const std::string_view key = textOf(keys[i]);
        if (key == query)
            return i;
        const bool isPart = key.find(query) != std::string_view::npos
            || (key.size() > oneLetter && query.find(key) != std::string_view::npos);
        if (isPart && !distance)
            distance = partly + key.size();
    }
    const bool isMeant = textAt(entry, "meaning_zh").find(query) != std::string_view::npos;
    return distance || !isMeant ? distance : 2 * partly;
}

/// The entries whose meaning is, or else contains, the query, the nearest first.
std::vector<const Value *> entriesFor(const Lexicon &lexicon, std::string_view query)
{
    std::multimap<size_t, const Value *> found;
    for (const Value *entry : lexicon.entries()) {
        if (const auto distance = distanceOf(*entry, query))
            found.emplace(*distance, entry);
    }
    std::vector<const Value *> entries;
    for (const auto &[distance, entry] : found)
        entries.push_back(entry);
    return entries;
}

JsonObject lookUpChinese(const Lexicon &lexicon, std::string_view query)
{
    constexpr size_t mostAlternatives = 3;
    const std::vector<const Value *> found = entriesFor(lexicon, query);
    if (found.empty())
        return answerUnknown(query);
    std::vector<JsonObject> others;
    const auto add = [&others](std::string_view text, std::string_view meaning) {
        const auto same = [text](const JsonObject &other) { return textAt(other.value(), "text") == text; };
        if (others.size() < mostAlternatives && std::ranges::none_of(others, same))
            others.emplace_back().set("text", text).set("meaning_zh", meaning);
    };
    for (const Value &other : listAt(*found.front(), "alternatives"))
        add(textAt(other, "text"), textAt(other, "meaning_zh"));
    for (const Value *other : std::span(found).subspan(1))
        add(textAt(*other, "headword"), textAt(*other, "meaning_zh"));
    return std::move(answerWith(*found.front()).set("alternatives", others));
}

} // namespace

JsonObject lookUp(const Lexicon &lexicon, std::string_view query)
{
    if (containsHan(query))
        return lookUpChinese(lexicon, collapsed(query));
    if (const Value *entry = lexicon.entryOf(query))
        return answerWith(*entry);
    const Value *meant = correctionOf(lexicon, query);
    return meant ? std::move(answerWith(*meant).set("corrected", Value(true))) : answerUnknown(query);
}

} // namespace nimbrelle::practice
