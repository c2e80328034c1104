#pragma once

#include "frame/AtomicFile.h"

#include <QList>

/// Files of text lines that grow at their end. A line ends with a line feed; what stands behind the last one
/// counts as a line as well.
namespace nimbrelle {

/// Appends `line`, which holds no line feed, on a line of its own and with a single write. Creates the file
/// only where there is none. A write that the disk cut short is taken back.
WriteResult appendLine(const QString &path, QByteArrayView line, FileCalls &calls = FileCalls::system());

/// The lines of a file's bytes without their ends; empty ones are left out. They point into `bytes`.
QList<QByteArrayView> linesOf(QByteArrayView bytes);

} // namespace nimbrelle
