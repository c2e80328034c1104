#pragma once

#include <QStringList>

namespace nimbrelle {

/// Where the data files are: one flat directory, one file for each kind of record.
class AppPaths {
public:
    /// The paths below `directory`; touches nothing.
    explicit AppPaths(QString directory);

    /// Those of this process: NIMBRELLE_DATA_DIR as it is if it is set and not empty, else the folder
    /// Nimbrelle in the user's generic data location. Chosen once, at first use; the directory is created
    /// then (prepareDataFolder()), and what killed processes left in it is removed. A failure shows only in
    /// that nothing can be read.
    static const AppPaths &shared();

    /// Those of all data files.
    QStringList files() const;

    QString supportDir;
    QString config, words, notes, grammar, affixes, deleted, reviewStats, log, coach, syncState, syncKnown;
    QString lookupQueue;
    QString backups; ///< a folder, in which the program keeps backups by itself
};

} // namespace nimbrelle
