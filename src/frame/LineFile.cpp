#include "frame/LineFile.h"

#include <QFile>

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

bool append(int file, QByteArrayView line, FileCalls &calls)
{
    const off_t before = sizeOf(file);
    QByteArray text(endsInsideALine(file, before) ? "\n" : "");
    text.append(line).append('\n');
    const ssize_t written = calls.write(file, text.constData(), static_cast<std::size_t>(text.size()));
    if (written > 0 && written < text.size())
        takeBack(file, before, written, calls);
    return written == text.size();
}

} // namespace

bool appendLine(const QString &path, QByteArrayView line, FileCalls &calls)
{
    const int file =
        calls.open(QFile::encodeName(path).constData(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0)
        return false;
    const bool isAppended = append(file, line, calls);
    calls.close(file);
    return isAppended;
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
