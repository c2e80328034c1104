#pragma once

#include "frame/AppConfig.h"
#include "frame/AppPaths.h"
#include "frame/AtomicFile.h"
#include "notebook/WordEntry.h"

/// One export, from values to a file: what the settings do in the background, and the command line in its
/// place.
namespace nimbrelle {

enum class ExportKind { csv, anki, ankiCloze, backup };

/// What an export is made of. Words and settings are those of the notebook; a backup takes the files.
struct ExportSource {
    AppPaths paths;
    QList<WordEntry> words;
    AppConfig config;
    Timestamp now;
};

/// Replaces `file`. Returns what to tell the user; throws a Failure that leaves the old file. A file in the
/// data folder itself is refused.
QString exportTo(
    const QString &file, ExportKind kind, const ExportSource &source, FileCalls &calls = FileCalls::system());

/// Such as nimbrelle-2026-11-23.csv.
QString exportName(ExportKind kind, Timestamp now);

} // namespace nimbrelle
