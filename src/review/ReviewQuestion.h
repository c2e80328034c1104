#pragma once

#include "notebook/WordEntry.h"
#include "review/SpellMode.h"

#include <variant>

namespace nimbrelle {

/// The learner sees the word and judges the recall.
struct Recognize {
    bool operator==(const Recognize &) const = default;
};
/// The learner types the word.
struct Spell {
    SpellMode mode = SpellMode::copy;

    bool operator==(const Spell &) const = default;
};
using QuestionType = std::variant<Spell, Recognize>;

/// One question of a round: a word, how it is asked, and what the screen shows with it.
struct ReviewQuestion {
    QUuid id; ///< fresh for every question, also when a word is asked again
    WordEntry entry; ///< as it stood when the question was made; the live one is found by its id
    QuestionType type = Recognize{};
    std::optional<QString> sentence;
    std::optional<QString> sentenceZh;
    QString answer; ///< what counts as right: the headword, or its form that the sentence needs
    std::optional<QString> clozeSentence; ///< only in mode full: the sentence with the answer blanked
    std::optional<QString> scaffold; ///< only in modes fill and chunks: the word with blanks

    static ReviewQuestion make(const WordEntry &entry);
    /// As the word's spellLevel calls for; a word that can't be divided falls back from chunks to fill.
    static ReviewQuestion spelling(const WordEntry &entry);
    /// The newest sentence that the learner really met, else the newest that there is.
    static std::optional<Example> example(const WordEntry &entry);

    bool isSpelling() const { return std::holds_alternative<Spell>(type); }
    /// Absent for a question of recognition.
    std::optional<SpellMode> mode() const;
    /// Which form of the word is wanted; absent when it is the headword itself.
    std::optional<QString> formHint() const;

    bool operator==(const ReviewQuestion &) const = default;
};

} // namespace nimbrelle
