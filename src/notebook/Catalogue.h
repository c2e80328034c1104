#pragma once

#include "frame/Record.h"

#include <QString>

#include <optional>

/// The four closed vocabularies of word knowledge. Case names are part of the file and AI formats.
namespace nimbrelle {

/// The tone of a word.
enum class Register { formal, neutral, casual, slang, technical };
template <>
inline constexpr auto caseNames<Register> = cases("formal", "neutral", "casual", "slang", "technical");

/// 正式, 中性, 口语, 俚语, 技术.
QString label(Register tone);
/// What the AI says, in any letter case; anything else is neutral.
Register registerFrom(const std::optional<QString> &text);

enum class FormKind { base, thirdPerson, ing, past, pastParticiple, plural, comparative, superlative };
template <>
inline constexpr auto caseNames<FormKind> =
    cases("base", "thirdPerson", "ing", "past", "pastParticiple", "plural", "comparative", "superlative");

QString label(FormKind kind);

enum class GrammarPoint {
    presentSimple,
    presentContinuous,
    pastSimple,
    pastContinuous,
    presentPerfect,
    pastPerfect,
    future,
    passive,
    gerund,
    infinitive,
    modal,
    imperative,
    conditional,
    comparative,
    superlative,
    plural,
};
template <>
inline constexpr auto caseNames<GrammarPoint> = cases("presentSimple", "presentContinuous", "pastSimple",
    "pastContinuous", "presentPerfect", "pastPerfect", "future", "passive", "gerund", "infinitive", "modal",
    "imperative", "conditional", "comparative", "superlative", "plural");

QString label(GrammarPoint point);
/// Two lines, the second an example that begins with 例：.
QString explanation(GrammarPoint point);

/// Twelve prefixes, then eighteen suffixes; the case name is the affix.
enum class Affix {
    un,
    in,
    dis,
    re,
    pre,
    mis,
    over,
    under,
    non,
    anti,
    co,
    inter,
    tion,
    ment,
    ness,
    ity,
    er,
    ist,
    able,
    ful,
    less,
    ous,
    ive,
    al,
    ic,
    ly,
    ize,
    ify,
    en,
    ship,
};
template <>
inline constexpr auto caseNames<Affix> = cases("un", "in", "dis", "re", "pre", "mis", "over", "under", "non",
    "anti", "co", "inter", "tion", "ment", "ness", "ity", "er", "ist", "able", "ful", "less", "ous", "ive",
    "al", "ic", "ly", "ize", "ify", "en", "ship");

constexpr bool isSuffix(Affix affix)
{
    return affix >= Affix::tion;
}
/// With a hyphen on the joining side: un-, -tion.
QString displayForm(Affix affix);
QStringList displayForms(const QList<Affix> &affixes);
QString meaning(Affix affix);
QString examples(Affix affix);
/// Other spellings or a caution; empty for most.
QString variants(Affix affix);
/// The whole catalogue as the AI prompts list it: "un-", "in-", ...
const QString &affixApiList();

/// Reads what the AI calls a form or a grammar point, whatever its case and underscores; blanks and hyphens
/// are not forgiven. Absent when it is none of ours.
std::optional<FormKind> looseFormKind(const std::optional<QString> &text);
std::optional<GrammarPoint> looseGrammarPoint(const std::optional<QString> &text);

} // namespace nimbrelle
