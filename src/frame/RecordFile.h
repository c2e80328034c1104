#pragma once

#include "frame/AtomicFile.h"
#include "frame/DamagedFiles.h"
#include "frame/RecordCodec.h"

namespace nimbrelle {

/// What a data file holds, or absent when it is missing, unreadable or breaks its form anywhere.
template <class T> std::optional<T> readRecordFile(const QString &path)
{
    const auto bytes = readFile(path);
    return bytes ? decode<T>(*bytes) : std::nullopt;
}

/// The same, and `damaged` gets to know of a file that is there but gives no value.
template <class T> std::optional<T> readRecordFile(const QString &path, DamagedFiles &damaged)
{
    auto value = readRecordFile<T>(path);
    if (!value)
        damaged.add(path);
    return value;
}

/// Replaces the file by `value`. A failure leaves the old file and is not reported: memory is ahead of the
/// disk until a later write.
template <class T>
void writeRecordFile(const QString &path, const T &value, FileMode mode = FileMode::ordinary)
{
    FileReplacement file(path, mode);
    JsonWriter writer(layoutOf(TextForm::file), [&file](QByteArrayView piece) { file.append(piece); });
    detail::writeValue(writer, value, TextForm::file);
    if (const auto rest = writer.finished()) {
        file.append(*rest);
        file.commit();
    }
}

/// The same, but what a damaged file held is kept first; if that fails, the file stays as it is.
template <class T>
void writeRecordFile(
    const QString &path, const T &value, DamagedFiles &damaged, FileMode mode = FileMode::ordinary)
{
    if (damaged.keep(path, mode))
        writeRecordFile(path, value, mode);
}

} // namespace nimbrelle
