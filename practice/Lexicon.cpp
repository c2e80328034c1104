#include "practice/Lexicon.h"

#include "practice/EmbeddedLexicon.h"

#include <algorithm>
#include <stdexcept>

namespace nimbrelle::practice {

namespace {

constexpr size_t longestForm = 8; // in words
constexpr size_t longestSentence = 40;

} // namespace

Lexicon::Lexicon() : m_grammar(&readFile("grammar")), m_talk(&readFile("talk"))
{
    for (const std::string_view name : {"everyday", "forum", "technical", "phrases", "names"}) {
        for (const Value &entry : readFile(name).GetArray())
            addEntry(entry);
    }
    for (const Value &sentence : readFile("sentences").GetArray())
        addSentence(sentence);
}

const Value &Lexicon::readFile(std::string_view name)
{
    const std::string_view json = embeddedFile(name);
    rapidjson::Document &file = m_files.emplace_back();
    file.Parse<rapidjson::kParseValidateEncodingFlag>(json.data(), json.size());
    if (file.HasParseError() || !(file.IsArray() || file.IsObject()))
        throw std::runtime_error("the lexicon's file " + std::string(name) + " is broken");
    return file;
}

void Lexicon::addEntry(const Value &entry)
{
    const std::string_view headword = textAt(entry, "headword");
    const Reading plain{.entry = &entry, .sense = &entry, .form = "base"};
    m_entries.push_back(&entry);
    addForm(keyOf(headword), plain);
    if (headword.find(' ') == std::string_view::npos) { // "TL;DR" is typed "tldr" as often
        std::string undivided = keyOf(headword);
        std::erase(undivided, ' ');
        addForm(undivided, plain);
    }
    addForms(entry, entry);
    for (const Value &sense : listAt(entry, "also"))
        addForms(entry, sense);
    for (const Value &example : listAt(entry, "examples"))
        addSentence(example);
}

void Lexicon::addForms(const Value &entry, const Value &sense)
{
    for (const auto &[name, form] : membersAt(sense, "inflections"))
        addForm(keyOf(textOf(form)), {.entry = &entry, .sense = &sense, .form = textOf(name)});
}

void Lexicon::addForm(std::string_view key, const Reading &reading)
{
    std::vector<Reading> &readings = m_forms[std::string(key)];
    const auto same = [&reading](const Reading &other) {
        return other.sense == reading.sense && other.form == reading.form;
    };
    if (std::ranges::none_of(readings, same))
        readings.push_back(reading);
}

void Lexicon::addSentence(const Value &sentence)
{
    const std::vector<Word> words = wordsOf(textAt(sentence, "en"));
    m_sentences.try_emplace(keyOf(words), &sentence);
    for (const Word &word : words)
        m_commonWords.insert(word.folded);
}

std::span<const Reading> Lexicon::readingsOf(std::string_view text) const
{
    const auto found = m_forms.find(keyOf(text));
    return found == m_forms.end() ? std::span<const Reading>() : std::span(found->second);
}

const Value *Lexicon::entryOfKey(std::string_view key) const
{
    const auto found = m_forms.find(key);
    if (found == m_forms.end())
        return nullptr;
    const auto isHeadword = [key](const Reading &reading) {
        return keyOf(textAt(*reading.entry, "headword")) == key;
    };
    const auto exact = std::ranges::find_if(found->second, isHeadword);
    return (exact == found->second.end() ? found->second.front() : *exact).entry;
}

namespace {

/// What `find` knows of the words' keys: the longest at each place, without overlaps.
template <typename Find>
std::vector<Match> longestMatches(std::span<const Word> words, size_t longest, Find find)
{
    std::vector<Match> matches;
    for (size_t begin = 0; begin < words.size();) {
        Match match{.begin = begin, .end = begin, .of = nullptr};
        std::string key;
        for (size_t end = begin; end < std::min(words.size(), begin + longest);) {
            key += (key.empty() ? "" : " ") + words[end++].folded;
            if (const Value *found = find(key))
                match = {.begin = begin, .end = end, .of = found};
        }
        if (match.of)
            matches.push_back(match);
        begin = std::max(match.end, begin + 1);
    }
    return matches;
}

} // namespace

std::vector<Match> Lexicon::wordsIn(std::span<const Word> words) const
{
    return longestMatches(words, longestForm, [this](const std::string &key) { return entryOfKey(key); });
}

std::vector<Match> Lexicon::sentencesIn(std::span<const Word> words) const
{
    return longestMatches(words, longestSentence, [this](const std::string &key) -> const Value * {
        const auto found = m_sentences.find(key);
        return found == m_sentences.end() ? nullptr : found->second;
    });
}

} // namespace nimbrelle::practice
