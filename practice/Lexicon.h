#pragma once

#include "practice/Text.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The words that the practice provider knows.
namespace nimbrelle::practice {

enum class FormKind { base, thirdPerson, ing, past, pastParticiple, plural, comparative, superlative };

/// As the contracts write it, such as "past_participle"; back again, absent for anything else.
std::string_view nameOf(FormKind kind);
std::optional<FormKind> formKindOf(std::string_view name);

struct Form {
    FormKind kind = FormKind::base;
    std::string text;
};

/// One part of speech of a word with what it means there. Names and set phrases have no forms.
struct Sense {
    std::string pos;
    std::string meaningZh;
    std::vector<Form> forms;

    bool isVerb() const;
};

struct ExampleSentence {
    std::string en;
    std::string zh;
};

struct Alternative {
    std::string text;
    std::string meaningZh;
};

struct Entry {
    std::string headword;
    std::string phonetic;
    std::string reg; ///< the register; the word itself is taken by the language
    std::string definitionEn;
    std::string noteZh; ///< when people use it, or what the name stands for
    std::string familyRoot;
    std::vector<std::string> affixes; ///< with their hyphen, such as "un-"
    std::vector<ExampleSentence> examples;
    std::string tipZh; ///< lines of a memory aid, or empty
    std::vector<std::string> chinese;
    std::vector<Alternative> alternatives;
    std::vector<Sense> senses; ///< never empty; the first is the usual one
    bool isBasic = false; ///< too plain to be named as a key term

    const Sense &usualSense() const { return senses.front(); }
    bool isName() const { return usualSense().pos == "name"; }
};

/// One reading of a form: whose it is and which form of that word.
struct FormHit {
    const Entry *entry = nullptr;
    const Sense *sense = nullptr;
    FormKind kind = FormKind::base;
};

/// Words `begin` to `end` (exclusive) of a text are a form of a word.
struct FormMatch {
    size_t begin = 0;
    size_t end = 0;
    const Entry *entry = nullptr;
};

class Lexicon {
public:
    Lexicon(std::vector<Entry> entries, std::vector<ExampleSentence> sentences);
    Lexicon(const Lexicon &) = delete; // hits point into the entries
    Lexicon &operator=(const Lexicon &) = delete;

    const std::vector<Entry> &entries() const { return m_entries; }

    /// Every reading of a form or headword, in any case; empty when the text is unknown.
    std::span<const FormHit> readingsOf(std::string_view text) const;
    const Entry *entryOf(std::string_view text) const;

    /// All known words and phrases of `words`, the longest first at each place, without overlaps.
    std::vector<FormMatch> matchesIn(std::span<const Word> words) const;
    std::optional<FormMatch> firstMatchOf(const Entry &entry, std::span<const Word> words) const;

    /// The translation of a sentence written for this project; punctuation and case may differ.
    std::optional<std::string> translationOf(std::string_view sentence) const;

    /// Words whose meaning is, or else contains, the Chinese text; the nearest first.
    std::vector<const Entry *> byMeaning(std::string_view chinese) const;

    /// The word meant by a text with a slip or two in it, or null. Short texts and words known from the
    /// sentences here are never "corrected".
    const Entry *correctionOf(std::string_view typed) const;

private:
    std::span<const FormHit> hitsOfKey(std::string_view key) const; // of what matchKey() made
    const Entry *entryOfKey(std::string_view key) const;
    void addForm(std::string_view form, FormHit hit);
    void addSentence(const ExampleSentence &sentence);

    std::vector<Entry> m_entries;
    std::map<std::string, std::vector<FormHit>, std::less<>> m_forms;
    std::map<std::string, std::string, std::less<>> m_translations;
    std::map<std::string, bool, std::less<>> m_plainWords;
    size_t m_longestPhrase = 1;
};

} // namespace nimbrelle::practice
