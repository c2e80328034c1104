#include "frame/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace nimbrelle {

using namespace Qt::StringLiterals;

int FileCalls::open(const char *path, int flags, mode_t mode)
{
    return ::open(path, flags, mode);
}

int FileCalls::lock(int file, int operation)
{
    return ::flock(file, operation);
}

int FileCalls::setMode(int file, mode_t mode)
{
    return ::fchmod(file, mode);
}

ssize_t FileCalls::write(int file, const char *bytes, std::size_t count)
{
    return ::write(file, bytes, count);
}

int FileCalls::truncate(int file, off_t size)
{
    return ::ftruncate(file, size);
}

int FileCalls::flush(int file)
{
    return ::fsync(file);
}

int FileCalls::close(int file)
{
    return ::close(file);
}

int FileCalls::rename(const char *from, const char *to)
{
    return ::rename(from, to);
}

int FileCalls::remove(const char *path)
{
    return ::unlink(path);
}

FileCalls &FileCalls::system()
{
    static FileCalls calls;
    return calls;
}

QString WriteResult::reason() const
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return u"磁盘满了"_s;
    case EROFS:
        return u"磁盘是只读的"_s;
    case EACCES:
    case EPERM:
        return u"没有写入的权限"_s;
    case ENOENT:
    case ENOTDIR:
        return u"没有这个文件夹"_s;
    case EISDIR:
        return u"那里已经有一个同名的文件夹"_s;
    case EIO:
        return u"磁盘读写出错"_s;
    default:
        return u"系统说 "_s + QString::fromLocal8Bit(std::strerror(error));
    }
}

WriteResult WriteResult::ofErrno()
{
    return {.error = errno == 0 ? EIO : errno};
}

namespace {

constexpr int newFile = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;

const QRegularExpression &temporaryName()
{
    static const QRegularExpression pattern(u"^\\..+\\.[0-9a-f]{16}\\.tmp$"_s);
    return pattern;
}

QString temporaryFor(const QFileInfo &target)
{
    const QString random =
        QString::number(QRandomGenerator::system()->generate64(), 16).rightJustified(16, u'0');
    return u"%1/.%2.%3.tmp"_s.arg(target.path(), target.fileName(), random);
}

// Where a write must go so that a link in place of the file survives it.
QFileInfo writtenTarget(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isSymLink())
        return info;
    const QString target = info.canonicalFilePath();
    return QFileInfo(target.isEmpty() ? info.symLinkTarget() : target);
}

bool writeAll(int file, QByteArrayView bytes, FileCalls &calls)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = calls.write(file, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written == 0)
            errno = ENOSPC;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

// The lock tells removeLeftovers of another process that this temporary is in use. Whoever swept it away
// between its creation and the lock has unlinked it.
bool claim(int file, FileCalls &calls)
{
    struct stat status { };
    if (calls.lock(file, LOCK_EX | LOCK_NB) != 0 || ::fstat(file, &status) != 0)
        return false;
    errno = EBUSY;
    return status.st_nlink == 1;
}

// Some file systems can't flush a directory; the replacement itself has happened all the same.
void flushDirectory(const QString &path, FileCalls &calls)
{
    const int directory =
        calls.open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (directory < 0)
        return;
    calls.flush(directory);
    calls.close(directory);
}

} // namespace

FileReplacement::FileReplacement(const QString &path, FileMode mode, FileCalls &calls) : m_calls(calls)
{
    const QFileInfo target = writtenTarget(path);
    m_target = target.filePath();
    m_temporary = QFile::encodeName(temporaryFor(target));
    const bool isSecret = mode == FileMode::ownerOnly;
    take([&] {
        m_file = m_calls.open(m_temporary.constData(), newFile, isSecret ? 0600 : 0666);
        return m_file >= 0;
    });
    take([&] { return claim(m_file, m_calls); });
    take([&] { return !isSecret || m_calls.setMode(m_file, 0600) == 0; });
}

FileReplacement::~FileReplacement()
{
    if (m_file < 0)
        return;
    m_calls.remove(m_temporary.constData());
    m_calls.close(m_file);
}

template <class Step> void FileReplacement::take(const Step &step)
{
    if (m_result && !step())
        m_result = WriteResult::ofErrno();
}

void FileReplacement::append(QByteArrayView bytes)
{
    take([&] { return writeAll(m_file, bytes, m_calls); });
}

WriteResult FileReplacement::commit()
{
    const QByteArray target = QFile::encodeName(m_target);
    take([&] { return m_calls.flush(m_file) == 0; });
    take([&] { return m_calls.rename(m_temporary.constData(), target.constData()) == 0; });
    if (m_result) {
        m_calls.close(std::exchange(m_file, -1));
        flushDirectory(QFileInfo(m_target).path(), m_calls);
    }
    return m_result;
}

WriteResult replaceFile(const QString &path, QByteArrayView bytes, FileMode mode, FileCalls &calls)
{
    FileReplacement replacement(path, mode, calls);
    replacement.append(bytes);
    return replacement.commit();
}

void removeLeftovers(const QString &directory)
{
    const auto names = QDir(directory).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &name : names) {
        if (!temporaryName().match(name).hasMatch())
            continue;
        const QByteArray path = QFile::encodeName(directory + u'/' + name);
        const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (file < 0)
            continue;
        if (::flock(file, LOCK_EX | LOCK_NB) == 0)
            ::unlink(path.constData());
        ::close(file);
    }
}

void restrictToOwner(const QString &path)
{
    constexpr mode_t ofOthers = S_IRWXG | S_IRWXO;
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return;
    struct stat status { };
    if (::fstat(file, &status) == 0 && status.st_uid == ::geteuid() && (status.st_mode & ofOthers) != 0)
        ::fchmod(file, status.st_mode & ~(S_IFMT | ofOthers));
    ::close(file);
}

std::optional<QByteArray> readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return bytes;
}

} // namespace nimbrelle
