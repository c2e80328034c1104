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
template <Is<SyncBundle> Record>
inline constexpr auto fieldsOf<Record> = fields(field("format", &Record::format),
    field("words", &Record::words), field("notes", &Record::notes), field("grammar", &Record::grammar),
    field("affixes", &Record::affixes), field("deleted", &Record::deleted), field("log", &Record::log),
    field("stats", &Record::stats), field("settings", &Record::settings));

} // namespace nimbrelle
