#pragma once

#include "practice/Json.h"
#include "practice/Text.h"

#include <deque>
#include <map>
#include <set>

/// What the practice provider knows. An entry is a word's object in the word files, a sense is the entry or
/// one of its "also", and a sentence has its English, its Chinese and the grammar that its words show.
namespace nimbrelle::practice {

/// One reading of a form: whose it is and which form of that word, as the contracts name it.
struct Reading {
    const Value *entry = nullptr;
    const Value *sense = nullptr;
    std::string_view form;
};

/// Words `begin` to `end` (exclusive) of a text are this entry or sentence.
struct Match {
    size_t begin = 0;
    size_t end = 0;
    const Value *of = nullptr;

    /// The part of `text`, whose words are `words`.
    std::string_view in(std::string_view text, std::span<const Word> words) const
    {
        return textOf(text, words.subspan(begin, end - begin));
    }
};

class Lexicon {
public:
    /// Reads the files that the program carries with it.
    Lexicon();
    Lexicon(const Lexicon &) = delete; // what it hands out points into it
    Lexicon &operator=(const Lexicon &) = delete;

    const std::vector<const Value *> &entries() const { return m_entries; }

    /// Every reading of a form or headword, in any case; empty when the text is unknown.
    std::span<const Reading> readingsOf(std::string_view text) const;
    /// Null when the text is unknown.
    const Value *entryOf(std::string_view text) const { return entryOfKey(keyOf(text)); }

    /// All known words and phrases of `words`, the longest first at each place, without overlaps.
    std::vector<Match> wordsIn(std::span<const Word> words) const;
    /// The sentences that are known as a whole; punctuation and case may differ.
    std::vector<Match> sentencesIn(std::span<const Word> words) const;

    /// The keys of all forms, and whether a word stands in any known sentence.
    const std::map<std::string, std::vector<Reading>, std::less<>> &forms() const { return m_forms; }
    bool isCommon(const std::string &word) const { return m_commonWords.contains(word); }

    /// A rule of the grammar file; null when there is none of this name.
    const Value *grammar(std::string_view name) const { return memberAt(*m_grammar, name); }
    /// What the conversations are made of.
    const Value &talk() const { return *m_talk; }

private:
    const Value &readFile(std::string_view name);
    void addEntry(const Value &entry);
    void addForm(std::string_view key, const Reading &reading);
    void addForms(const Value &entry, const Value &sense);
    void addSentence(const Value &sentence);
    const Value *entryOfKey(std::string_view key) const;

    std::deque<rapidjson::Document> m_files;
    const Value *m_grammar = nullptr;
    const Value *m_talk = nullptr;
    std::vector<const Value *> m_entries;
    std::map<std::string, std::vector<Reading>, std::less<>> m_forms;
    std::map<std::string, const Value *, std::less<>> m_sentences;
    std::set<std::string, std::less<>> m_commonWords;
};

} // namespace nimbrelle::practice
