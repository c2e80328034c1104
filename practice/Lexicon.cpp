#include "practice/Lexicon.h"

#include "practice/EditDistance.h"

#include <algorithm>
#include <array>

namespace nimbrelle::practice {

static constexpr std::array<std::string_view, 8> formKindNames = {
    "base", "third_person", "ing", "past", "past_participle", "plural", "comparative", "superlative"};

std::string_view nameOf(FormKind kind)
{
    return formKindNames[static_cast<size_t>(kind)];
}

std::optional<FormKind> formKindOf(std::string_view name)
{
    const auto found = std::ranges::find(formKindNames, name);
    if (found == formKindNames.end())
        return std::nullopt;
    return static_cast<FormKind>(found - formKindNames.begin());
}

bool Sense::isVerb() const
{
    return std::ranges::any_of(forms, [](const Form &form) { return form.kind == FormKind::past; });
}

/// "TL;DR" is typed "tldr" as often.
static std::string withoutDividers(std::string_view headword)
{
    std::string key = matchKey(headword);
    std::erase(key, ' ');
    return key;
}

Lexicon::Lexicon(std::vector<Entry> entries, std::vector<ExampleSentence> sentences)
    : m_entries(std::move(entries))
{
    for (const Entry &entry : m_entries) {
        addForm(entry.headword, {&entry, &entry.usualSense(), FormKind::base});
        if (entry.headword.find(' ') == std::string::npos)
            addForm(withoutDividers(entry.headword), {&entry, &entry.usualSense(), FormKind::base});
        for (const Sense &sense : entry.senses) {
            for (const Form &form : sense.forms)
                addForm(form.text, {&entry, &sense, form.kind});
        }
        for (const ExampleSentence &example : entry.examples)
            addSentence(example);
    }
    for (const ExampleSentence &sentence : sentences)
        addSentence(sentence);
}

void Lexicon::addForm(std::string_view form, FormHit hit)
{
    const std::string key = matchKey(form);
    std::vector<FormHit> &hits = m_forms[key];
    const auto same = [&hit](const FormHit &other) {
        return other.sense == hit.sense && other.kind == hit.kind;
    };
    if (std::ranges::none_of(hits, same))
        hits.push_back(hit);
    m_longestPhrase = std::max(m_longestPhrase, wordsOf(key).size());
}

void Lexicon::addSentence(const ExampleSentence &sentence)
{
    m_translations.try_emplace(matchKey(sentence.en), sentence.zh);
    for (const Word &word : wordsOf(sentence.en))
        m_plainWords[word.folded] = true;
}

std::span<const FormHit> Lexicon::hitsOfKey(std::string_view key) const
{
    const auto found = m_forms.find(key);
    return found == m_forms.end() ? std::span<const FormHit>() : std::span(found->second);
}

const Entry *Lexicon::entryOfKey(std::string_view key) const
{
    const auto hits = hitsOfKey(key);
    if (hits.empty())
        return nullptr;
    const auto isHeadword = [key](const FormHit &hit) { return matchKey(hit.entry->headword) == key; };
    const auto exact = std::ranges::find_if(hits, isHeadword);
    return exact == hits.end() ? hits.front().entry : exact->entry;
}

std::span<const FormHit> Lexicon::readingsOf(std::string_view text) const
{
    return hitsOfKey(matchKey(text));
}

const Entry *Lexicon::entryOf(std::string_view text) const
{
    return entryOfKey(matchKey(text));
}

std::vector<FormMatch> Lexicon::matchesIn(std::span<const Word> words) const
{
    std::vector<FormMatch> matches;
    for (size_t begin = 0; begin < words.size();) {
        size_t end = begin;
        const Entry *entry = nullptr;
        std::string key;
        for (size_t i = begin; i < std::min(words.size(), begin + m_longestPhrase); ++i) {
            key += (i == begin ? "" : " ") + words[i].folded;
            if (const Entry *found = entryOfKey(key)) {
                entry = found;
                end = i + 1;
            }
        }
        if (entry)
            matches.push_back({begin, end, entry});
        begin = entry ? end : begin + 1;
    }
    return matches;
}

std::optional<FormMatch> Lexicon::firstMatchOf(const Entry &entry, std::span<const Word> words) const
{
    std::optional<FormMatch> best;
    for (size_t begin = 0; begin < words.size() && !best; ++begin) {
        std::string key;
        for (size_t i = begin; i < std::min(words.size(), begin + m_longestPhrase); ++i) {
            key += (i == begin ? "" : " ") + words[i].folded;
            const auto mine = [&entry](const FormHit &hit) { return hit.entry == &entry; };
            if (std::ranges::any_of(hitsOfKey(key), mine))
                best = FormMatch{begin, i + 1, &entry};
        }
    }
    return best;
}

std::optional<std::string> Lexicon::translationOf(std::string_view sentence) const
{
    const auto found = m_translations.find(matchKey(sentence));
    return found == m_translations.end() ? std::nullopt : std::optional(found->second);
}

/// Smaller is nearer; absent when the meaning has nothing of the query.
static std::optional<size_t> distanceOfMeaning(const Entry &entry, std::string_view query)
{
    for (const std::string &key : entry.chinese) {
        if (key == query)
            return static_cast<size_t>(&key - entry.chinese.data());
    }
    constexpr size_t partly = 100;
    for (const std::string &key : entry.chinese) {
        if (key.find(query) != std::string::npos
            || (codePointCount(key) > 1 && query.find(key) != std::string_view::npos))
            return partly + codePointCount(key);
    }
    const auto means = [&](const Sense &sense) { return sense.meaningZh.find(query) != std::string::npos; };
    return std::ranges::any_of(entry.senses, means) ? std::optional(2 * partly) : std::nullopt;
}

std::vector<const Entry *> Lexicon::byMeaning(std::string_view chinese) const
{
    const std::string query = collapsed(chinese);
    std::vector<std::pair<size_t, const Entry *>> found;
    for (const Entry &entry : m_entries) {
        if (const auto distance = distanceOfMeaning(entry, query))
            found.emplace_back(*distance, &entry);
    }
    std::ranges::stable_sort(found, {}, &std::pair<size_t, const Entry *>::first);
    std::vector<const Entry *> entries;
    for (const auto &[distance, entry] : found)
        entries.push_back(entry);
    return entries;
}

/// How many slips are forgiven. Names are typed wrong oftenest and seldom collide with a word.
static size_t toleranceFor(size_t length, const Entry &entry)
{
    if (length < (entry.isName() ? 5u : 6u))
        return 0;
    return length < 9 ? 1 : 2;
}

const Entry *Lexicon::correctionOf(std::string_view typed) const
{
    const std::string key = matchKey(typed);
    if (m_forms.contains(key) || m_plainWords.contains(key))
        return nullptr;
    const Entry *best = nullptr;
    size_t bestDistance = 3;
    for (const auto &[form, hits] : m_forms) {
        const size_t longer = std::max(form.size(), key.size());
        const size_t shorter = std::min(form.size(), key.size());
        if (key.empty() || form.front() != key.front() || longer - shorter >= bestDistance)
            continue;
        const size_t distance = editDistance(key, form);
        if (distance < bestDistance && distance <= toleranceFor(key.size(), *hits.front().entry)) {
            best = hits.front().entry;
            bestDistance = distance;
        }
    }
    return best;
}

} // namespace nimbrelle::practice
