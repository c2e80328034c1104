#pragma once

#include "notebook/Unlock.h"
#include "notebook/WordEntry.h"

namespace nimbrelle {

struct Explanation;
struct PageSource;

/// What a meeting with a word leaves in the records. New encounters come without their ids, which are the
/// store's to give.
namespace Encounters {

/// The sentence of the meeting; its text may be empty.
Example newExample(const Explanation &explanation, const PageSource &source, Timestamp now);
/// A word as it is first saved, with the example if that has a text.
WordEntry newWord(const Explanation &explanation, const Example &example);
/// False for an empty sentence and for one that the word has already.
bool addExample(WordEntry &word, const Example &example);

/// Day and place.
void mark(WordEntry &word, const PageSource &source, Timestamp now);
/// The forms that the AI knows, and the one that was met.
void recordForm(WordEntry &word, const Explanation &explanation, Timestamp now, Unlock &unlock);

/// Grammar is collected from what the user really read, never from a sentence that the AI made up; absent too
/// for a sentence that is among `known`.
std::optional<GrammarEncounter> newGrammar(const QList<GrammarEncounter> &known,
    const Explanation &explanation, const PageSource &source, Timestamp now);
/// An affix is a property of the word, so it counts even where the sentence is made up. In the order of the
/// AI's list, each affix once.
QList<AffixEncounter> newAffixes(
    const QList<AffixEncounter> &known, const Explanation &explanation, Timestamp now);

} // namespace Encounters

} // namespace nimbrelle
