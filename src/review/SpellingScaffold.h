#pragma once

#include "notebook/Catalogue.h"

#include <QList>
#include <QStringList>

/// Turns a word into something easier to spell than a blank line. Positions and lengths count characters;
/// blanks are underscores.
namespace nimbrelle::SpellingScaffold {

struct Chunk {
    QString text;
    bool isAffix = false; ///< taken from the word's affix list

    bool operator==(const Chunk &) const = default;
};

/// `word` with up to `blanks` letters missing, spread evenly over its vowels and the first of double letters,
/// or over all its letters if it has neither; never the first character.
QString fillPattern(const QString &word, qint64 blanks);

/// `word` cut by its vowel groups, without any dictionary; joined, the pieces are `word`.
QStringList syllables(const QString &word);

/// The words of a phrase, or the affixes of `affixes` and the syllables between them. Each affix is taken at
/// most once and leaves at least three characters.
QList<Chunk> chunks(const QString &word, const QList<Affix> &affixes);

/// The chunks with the longest that is no affix missing; absent when the word can't be divided.
std::optional<QString> chunkPattern(const QString &word, const QList<Affix> &affixes);

/// How an affix is written in words, in the order in which to try.
QStringList spellings(Affix affix);

} // namespace nimbrelle::SpellingScaffold
