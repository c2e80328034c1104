#pragma once

#include "main/CommandLine.h"

/// Taking the data along and bringing it back from the command line. Each gives the exit code.
namespace nimbrelle {

enum class ExportKind;

QCoro::Task<int> exportData(ExportKind kind, OptionRun run);
/// Tells what importBackup() would change.
QCoro::Task<int> checkBackup(OptionRun run);
QCoro::Task<int> importBackup(OptionRun run);
/// Ends when all words are looked up, or wait for something.
QCoro::Task<int> importWords(OptionRun run);

/// The value of the option as a path that holds in any folder: the running program has another one.
QString givenPath(const QString &value, QTextStream &in);

} // namespace nimbrelle
