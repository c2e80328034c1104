#pragma once

#include "notebook/WordEntry.h"

/// The notebook's words as a table for spreadsheets: comma-separated values as RFC 4180 has them, in UTF-8
/// with a byte order mark, without which spreadsheets take Chinese for something else.
namespace nimbrelle::CsvWords {

/// One line of headings, then one row a word, in the order of `entries`. What a word has several of stands in
/// one cell, numbered, a line each. Times are local.
QByteArray table(const QList<WordEntry> &entries, const AppConfig &config, Timestamp now);

/// Without the apostrophe that keeps a spreadsheet from taking the cell for a formula.
QString withoutGuard(const QString &cell);

} // namespace nimbrelle::CsvWords
