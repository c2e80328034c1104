#pragma once

#include "practice/Lexicon.h"

/// The two contracts that tell of one word share their answer's fields.
namespace nimbrelle::practice {

struct ExplainQuestion {
    std::string selection;
    std::string context; ///< empty for none
};

/// Absent unless the user's message has the form of an explain request. The selection may hold line breaks.
std::optional<ExplainQuestion> readExplainQuestion(std::string_view message);

struct WordAnswer {
    std::string headword;
    std::string phonetic;
    std::string pos;
    std::string meaningZh;
    std::string definitionEn;
    std::string reg = "neutral";
    std::string registerNoteZh;
    std::string sentence;
    bool sentenceIsExample = true;
    std::string sentenceZh;
    std::string surfaceForm;
    FormKind formKind = FormKind::base;
    std::vector<Form> inflections;
    std::string grammar = "none";
    std::string grammarNoteZh;
    std::string familyRoot;
    std::vector<std::string> affixes;
};

/// What holds for a word wherever it is met, with `sense` telling the part of speech.
WordAnswer describe(const Entry &entry, const Sense &sense);
/// The honest answer about a word that the lexicon lacks.
WordAnswer describeUnknown(std::string_view text);

WordAnswer explain(const Lexicon &lexicon, const ExplainQuestion &question);

inline constexpr std::string_view noTranslationZh = "（练习模式没有这句的译文）";

} // namespace nimbrelle::practice
