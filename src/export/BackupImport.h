#pragma once

#include "export/BackupMerge.h"

#include <QCoro/QCoroTask>

#include <stop_token>

/// A backup's way into the notebook that is in use. What takes long is done in the background. Main thread
/// only.
namespace nimbrelle {

class Background;
class LocalBackups;

/// What an import works on; all of it outlives the work, or its owner stops it before.
struct ImportParts {
    WordStore &words;
    CoachHistory &coach;
    Background &background;
    LocalBackups &backups;
};

struct BackupReading {
    Backup::Content backup;
    BackupPlan plan; ///< what an import would change now
};

/// Changes nothing. Throws a Failure with what is wrong with the file.
QCoro::Task<BackupReading> readBackup(ImportParts parts, QString file, std::stop_token stop = {});

/// Merges the backup into the notebook, behind a backup of that one unless there is nothing to change; then
/// it writes nothing at all. `source` is the file that the backup is from. Throws a Failure, before anything
/// is changed.
QCoro::Task<BackupPlan> mergeBackup(
    ImportParts parts, Backup::Content backup, QString source, std::stop_token stop = {});

} // namespace nimbrelle
