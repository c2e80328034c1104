#include "frame/LineFile.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nimbrelle {

namespace {

off_t sizeOf(int file)
{
    struct stat status { };
    return ::fstat(file, &status) == 0 ? status.st_size : 0;
}

// A crash or an editor may have left the last line without its end.
bool endsInsideALine(int file, off_t size)
{
    char last = '\n';
    return size > 0 && ::pread(file, &last, 1, size - 1) == 1 && last != '\n';
}

// Not when another process has appended behind it, whose line would go along.
void takeBack(int file, off_t before, ssize_t written, FileCalls &calls)
{
    if (sizeOf(file) == before + written)
        calls.truncate(file, before);
}

WriteResult append(int file, QByteArrayView line, FileCalls &calls)
{
    const off_t before = sizeOf(file);
    QByteArray text(endsInsideALine(file, before) ? "\n" : "");
    text.append(line).append('\n');
    const ssize_t written = calls.write(file, text.constData(), static_cast<std::size_t>(text.size()));
    if (written == text.size())
        return {};
    const WriteResult failure = written < 0 ? WriteResult::ofErrno() : WriteResult{.error = ENOSPC};
    if (written > 0)
        takeBack(file, before, written, calls);
    return failure;
}

} // namespace

WriteResult appendLine(const QString &path, QByteArrayView line, FileCalls &calls)
{
    const int file =
        calls.open(QFile::encodeName(path).constData(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0)
        return WriteResult::ofErrno();
    const WriteResult result = append(file, line, calls);
    calls.close(file);
    return result;
}

QList<QByteArrayView> linesOf(QByteArrayView bytes)
{
    QList<QByteArrayView> lines;
    while (!bytes.isEmpty()) {
        const qsizetype end = bytes.indexOf('\n');
        const qsizetype size = end < 0 ? bytes.size() : end;
        if (size > 0)
            lines.append(bytes.first(size));
        bytes = bytes.sliced(std::min(size + 1, bytes.size()));
    }
    return lines;
}

} // namespace nimbrelle
