#pragma once

#include "coach/CoachHistory.h"
#include "export/Archive.h"
#include "frame/AtomicFile.h"
#include "notebook/SyncBundle.h"

#include <QMap>

/// All data files in one zip archive, which only its owner can read: as they stand on disk, under their own
/// names, behind a first entry that says what this is. The provider's key and the sync token are left out; a
/// data file that can't be read stands in the folder damaged/, and a damaged config.json, which may hold them
/// somewhere, nowhere.
namespace nimbrelle::Backup {

/// What of a backup can come back. The other files describe only the device that they are from.
struct Content {
    Timestamp madeAt;
    SyncBundle notebook;
    QList<CoachDay> coach;
};

/// What an archive is made of.
struct Draft {
    QList<Archive::Entry> entries;
    QStringList leftOut; ///< files that can't be handed on, since what they hold can't be told
    qsizetype words = 0; ///< that can be read
    bool hasNotebook = false; ///< there is more than settings and what describes the device
};

/// From the data files, also beside a running program. Throws a Failure for one that is there and can't be
/// read.
Draft draftOf(const AppPaths &paths, Timestamp now);

/// Replaces `file`; a failure leaves the old one. Throws a Failure when the archive can't be made.
WriteResult put(const Draft &draft, const QString &file, FileCalls &calls = FileCalls::system());

/// Makes the archive from the data files, also beside a running program, and replaces `file`. Returns what to
/// tell the user; throws a Failure that leaves the old file.
QString write(
    const AppPaths &paths, const QString &file, Timestamp now, FileCalls &calls = FileCalls::system());

/// Reads all of it, or throws a Failure with what is wrong with it; touches no data file.
Content read(const QString &file);
Content parse(QByteArrayView archive);

} // namespace nimbrelle::Backup
