#include "export/BackupImport.h"

#include "export/LocalBackups.h"
#include "frame/Failure.h"
#include "notebook/WordStore.h"
#include "platform/Background.h"

namespace nimbrelle {

namespace {

struct CurrentMerge {
    SyncBundle local;
    BackupMerge merge;
};

/// What the work refers to may be gone once it was stopped.
void endIfStopped(const std::stop_token &stop)
{
    if (stop.stop_requested())
        throw Cancelled();
}

// What was learned while the merge was made belongs into it: then it is made once more.
QCoro::Task<CurrentMerge> mergeNow(ImportParts parts, const Backup::Content &backup, std::stop_token stop)
{
    CurrentMerge current;
    const std::function<void()> work = [&] { current.merge = mergeOf(current.local, backup); };
    do {
        current.local = parts.words.snapshot();
        co_await parts.background.run(work);
        endIfStopped(stop);
    } while (current.local != parts.words.snapshot());
    current.merge.plan.coachDays = parts.coach.missing(backup.coach).size();
    co_return current;
}

} // namespace

QCoro::Task<BackupReading> readBackup(ImportParts parts, QString file, std::stop_token stop)
{
    const SyncBundle local = parts.words.snapshot();
    BackupReading reading;
    const std::function<void()> work = [&] {
        reading.backup = Backup::read(file);
        reading.plan = mergeOf(local, reading.backup).plan;
    };
    co_await parts.background.run(work);
    endIfStopped(stop);
    reading.plan.coachDays = parts.coach.missing(reading.backup.coach).size();
    co_return reading;
}

QCoro::Task<BackupPlan> mergeBackup(
    ImportParts parts, Backup::Content backup, QString source, std::stop_token stop)
{
    CurrentMerge current = co_await mergeNow(parts, backup, stop);
    if (current.merge.plan.changesNothing())
        co_return current.merge.plan;
    co_await parts.backups.beforeImport(source);
    endIfStopped(stop);
    if (current.local != parts.words.snapshot())
        current = co_await mergeNow(parts, backup, stop);
    co_return bringBack(current.merge, backup.coach, parts.words, parts.coach);
}

} // namespace nimbrelle
