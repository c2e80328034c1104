#pragma once

#include "frame/AppConfig.h"
#include "notebook/WordEntry.h"

namespace nimbrelle {

/// The whole notebook as one document: what devices exchange and what a merge works on.
struct SyncBundle {
    qint64 format = 1; ///< only ever 1; not acted on when read
    QList<WordEntry> words;
    QList<AINote> notes;
    QList<GrammarEncounter> grammar;
    QList<AffixEncounter> affixes;
    QList<Tombstone> deleted;
    QStringList log; ///< raw lines of the learning log
    std::optional<ReviewStats> stats;
    std::optional<StudySettings> settings;

    bool operator==(const SyncBundle &) const = default;
};
template <> inline constexpr bool missingTakesDefault<SyncBundle> = true;
template <>
inline constexpr auto fieldsOf<SyncBundle> =
    fields("format", &SyncBundle::format, "words", &SyncBundle::words, "notes", &SyncBundle::notes, "grammar",
        &SyncBundle::grammar, "affixes", &SyncBundle::affixes, "deleted", &SyncBundle::deleted, "log",
        &SyncBundle::log, "stats", &SyncBundle::stats, "settings", &SyncBundle::settings);

} // namespace nimbrelle
