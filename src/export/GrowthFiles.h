#pragma once

#include "export/GrowthReport.h"
#include "frame/Failure.h"

namespace nimbrelle {

class AppPaths;
class LearningLog;

/// Reads what a report is made from, and writes nothing. Throws a Failure for a file that is there and can't
/// be read, since a report without it would not be true.
GrowthSource readGrowthSource(
    const AppPaths &paths, const LearningLog &log, const AppConfig &config, Timestamp now);

/// Replaces the file by the page; only its owner can read it. Throws a Failure, also for a place in the
/// folders of the data files and of the backups.
void writeGrowthPage(const QString &path, QByteArrayView page, const AppPaths &paths);

} // namespace nimbrelle
