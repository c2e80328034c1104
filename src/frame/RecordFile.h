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

/// The same, but what a damaged file held is kept first; if that fails, the file stays as it is. After a
/// failure it is tried again later, so `value` must live as long as `damaged`.
template <class T>
void writeRecordFile(
    const QString &path, const T &value, DamagedFiles &damaged, FileMode mode = FileMode::ordinary)
{
    DataWriter &writer = damaged.writer();
    WriteResult result = damaged.keep(path, mode);
    if (result)
        result = replaceRecordFile(path, value, mode, writer.calls());
    writer.report(path, result, {.owner = &damaged, .write = [path, &value, &damaged, mode] {
                                     writeRecordFile(path, value, damaged, mode);
                                 }});
}

} // namespace nimbrelle
