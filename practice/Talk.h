#pragma once

#include "practice/Lexicon.h"

namespace nimbrelle::practice {

/// What can be spoken of, by kind.
using Subjects = std::map<std::string, std::vector<JsonObject>, std::less<>>;

/// Canned answers. An answer of the talk file fits a question that holds one of the words in its "asks", or
/// any question where it has none, and says its paragraphs:
///   {"of": "saved", "most": 5, "lead": "…", "each": "**{1}**[（{meaning_zh}）]", "between": "、", "end":
///   "…",
///    "none": "…"}
/// "each" is filled in for the first "most" subjects of a kind, and "none" is said where there are none; a
/// paragraph without "of" is its "lead". A {member} of the subject is put in its place, and what stands in
/// [brackets] is left out where its member is missing.
class Talk {
public:
    Talk(const Value &file, const Subjects &subjects) : m_file(file), m_subjects(subjects) { }

    /// The first answer of the list `name` that fits and has something to say.
    std::string answer(std::string_view name, std::string_view question) const;

private:
    std::string paragraph(const Value &paragraph) const;
    std::string filled(std::string_view form, const Value &subject, bool &isWhole) const;
    std::string member(std::string_view name, const Value &subject) const;

    const Value &m_file;
    const Subjects &m_subjects;
};

} // namespace nimbrelle::practice
