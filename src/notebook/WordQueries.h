#pragma once

#include "notebook/WordEntry.h"

#include <QSet>

/// What can be read off the notebook's lists.
namespace nimbrelle::WordQueries {

/// The position of the word of that headword, blanks round the text and letter case aside.
std::optional<qsizetype> index(const QList<WordEntry> &entries, const QString &text);
std::optional<qsizetype> index(const QList<WordEntry> &entries, const QUuid &id);

qint64 learningCount(const QList<WordEntry> &entries);
qint64 spellPracticeCount(const QList<WordEntry> &entries);

/// The first `most` mastered words, as headwords.
QStringList masteredWords(const QList<WordEntry> &entries, qsizetype most);

/// The other words of its family, in the order of `entries`.
QList<WordEntry> family(const QList<WordEntry> &entries, const WordEntry &entry);

/// Up to five source keys, the most frequent first, then up to eight page titles.
QStringList topInterests(const QList<WordEntry> &entries);

QSet<GrammarPoint> unlockedGrammar(const QList<GrammarEncounter> &encounters);
QSet<Affix> unlockedAffixes(const QList<AffixEncounter> &encounters);

} // namespace nimbrelle::WordQueries
