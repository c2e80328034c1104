#pragma once

#include "frame/AtomicFile.h"
#include "frame/DamagedFiles.h"
#include "frame/RecordCodec.h"

#include <cerrno>

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

/// Replaces the file by `value`. A failure leaves the old file.
template <class T>
WriteResult replaceRecordFile(const QString &path, const T &value, FileMode mode, FileCalls &calls)
{
    FileReplacement file(path, mode, calls);
    JsonWriter writer(layoutOf(TextForm::file), [&file](QByteArrayView piece) { file.append(piece); });
    detail::writeValue(writer, value, TextForm::file);
    const auto rest = writer.finished();
    if (!rest)
        return {.error = EINVAL};
    file.append(*rest);
    return file.commit();
}

/// The same for an owner, who goes on after a failure: memory is ahead of the disk until a later write, and
/// the writer knows of it.
template <class T>
void writeRecordFile(const QString &path, const T &value, FileMode mode = FileMode::ordinary,
    DataWriter &writer = DataWriter::shared())
{
    writer.report(path, replaceRecordFile(path, value, mode, writer.calls()));
}

/// The same, but what a damaged file held is kept first; if that fails, the file stays as it is.
template <class T>
void writeRecordFile(
    const QString &path, const T &value, DamagedFiles &damaged, FileMode mode = FileMode::ordinary)
{
    const WriteResult kept = damaged.keep(path, mode);
    if (kept)
        writeRecordFile(path, value, mode, damaged.writer());
    else
        damaged.writer().report(path, kept);
}

} // namespace nimbrelle
