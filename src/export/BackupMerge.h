#pragma once

#include "export/Backup.h"

/// Brings a backup back, into an empty notebook or one in use, by the rules that devices sync by: nothing is
/// overwritten, what was deleted on either side stays deleted, and the other devices agree afterwards.
namespace nimbrelle {

class WordStore;

/// What bringing a backup back changes.
struct BackupPlan {
    Timestamp madeAt;
    qsizetype words = 0; ///< that the backup holds
    qsizetype added = 0; ///< words that come in
    qsizetype changed = 0; ///< words here that get more, or a later state
    qsizetype removed = 0; ///< words here that had been deleted when the backup was made
    qsizetype buried = 0; ///< words of the backup that were deleted here since
    qsizetype otherRecords = 0; ///< notes, grammar, affixes and log lines that come in
    qsizetype removedRecords = 0; ///< notes, sentences and the like here that had been deleted by then
    qsizetype tombstones = 0; ///< that come in, of all that
    qsizetype coachDays = 0;
    bool hasSettings = false; ///< the study settings become those of the backup

    bool operator==(const BackupPlan &) const = default;

    bool changesNothing() const;
    /// For the user, one sentence a line.
    QStringList lines() const;
    /// Once it is done.
    QString resultText() const;
};

/// A notebook and a backup, merged.
struct BackupMerge {
    SyncBundle merged;
    BackupPlan plan; ///< without the coach's days
};

/// Pure; `local` is a snapshot of the store, and must still be one when the result is put in its place.
BackupMerge mergeOf(const SyncBundle &local, const Backup::Content &backup);

/// Puts the merged notebook in the place of the one that it was made of, and adds the coach's days. Returns
/// what that changed; a backup that changes nothing writes nothing.
BackupPlan bringBack(
    const BackupMerge &merge, const QList<CoachDay> &days, WordStore &store, CoachHistory &coach);

} // namespace nimbrelle
