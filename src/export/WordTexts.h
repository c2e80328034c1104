#pragma once

#include "notebook/WordEntry.h"

/// What the exports of words say alike.
namespace nimbrelle::WordTexts {

/// "ran（过去式），run（过去分词）", met or not.
QString forms(const WordEntry &word);
/// "ran（过去式） × 3", of those met.
QString metForms(const WordEntry &word);

/// Application, host and title of where it was met, then its address; empty when nothing is known.
QString source(const Example &example);
QString source(const AINote &note);
/// The same without the address.
QString sourceName(const Example &example);

} // namespace nimbrelle::WordTexts
