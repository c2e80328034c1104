#pragma once

#include <QByteArray>
#include <QString>

namespace nimbrelle {

class AppPaths;

/// The content of a file that the user chose. Throws a Failure when it is missing or can't be read, and one
/// with the text `tooLarge` for more than `limit` bytes.
QByteArray readChosenFile(const QString &file, qint64 limit, const QString &tooLarge);

/// Throws a Failure for a place among the program's own files: none must be replaced by another thing by a
/// slip of the hand.
void refuseDataFolder(const QString &file, const AppPaths &paths);

} // namespace nimbrelle
