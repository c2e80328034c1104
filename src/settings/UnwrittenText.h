#pragma once

#include "frame/DataWriter.h"

/// What is told of data files that could not be written: which, where and why. Empty when all were.
namespace nimbrelle::UnwrittenText {

/// For the status menu. `home` is written as "~".
QString line(const QList<UnwrittenFile> &files, const QString &home);

/// For the settings: the same, and what it means.
QString note(const QList<UnwrittenFile> &files, const QString &home);

} // namespace nimbrelle::UnwrittenText
