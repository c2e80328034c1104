#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <sys/types.h>

namespace nimbrelle {

/// The steps of writing a file, one virtual each, so that a test can let any of them fail. The base class
/// is the system itself; results are those of the calls of the same name.
class FileCalls {
public:
    virtual ~FileCalls() = default;

    virtual int open(const char *path, int flags, mode_t mode);
    virtual int lock(int file, int operation);
    virtual int setMode(int file, mode_t mode);
    virtual ssize_t write(int file, const char *bytes, std::size_t count);
    virtual int truncate(int file, off_t size);
    virtual int flush(int file);
    virtual int close(int file);
    virtual int rename(const char *from, const char *to);
    virtual int remove(const char *path);

    static FileCalls &system();
};

/// How a write ended.
struct WriteResult {
    int error = 0; ///< 0, or what errno said of the step that failed

    explicit operator bool() const { return error == 0; }
    /// Why it failed, to be told to the user.
    QString reason() const;
    /// After a call that failed.
    static WriteResult ofErrno();
};

enum class FileMode {
    ordinary, ///< what the umask leaves of 0666
    ownerOnly, ///< 0600 from the first byte on
};

/// A file on its way to be replaced, so that a crash at any moment leaves the old content or the new one:
/// temporary file in the same directory, write, flush to disk, rename, flush the directory. A symbolic link
/// keeps pointing where it did.
class FileReplacement {
public:
    explicit FileReplacement(
        const QString &path, FileMode mode = FileMode::ordinary, FileCalls &calls = FileCalls::system());
    /// Without a commit the old file stays as it was.
    ~FileReplacement();
    Q_DISABLE_COPY_MOVE(FileReplacement)

    /// A failure shows at commit().
    void append(QByteArrayView bytes);

    /// Puts what was appended in place. When any step failed, the old file stays as it was.
    WriteResult commit();

private:
    /// One step, unless an earlier one failed.
    template <class Step> void take(const Step &step);

    FileCalls &m_calls;
    QString m_target;
    QByteArray m_temporary;
    int m_file = -1;
    WriteResult m_result; ///< of the steps so far
};

/// The whole of a replacement in one call.
WriteResult replaceFile(const QString &path, QByteArrayView bytes, FileMode mode = FileMode::ordinary,
    FileCalls &calls = FileCalls::system());

/// Removes the temporaries that killed processes left in `directory`; those in use are left alone.
void removeLeftovers(const QString &directory);

/// Takes the rights of the group and of others from one of the user's own files, or folders, that is wider.
void restrictToOwner(const QString &path);

/// The whole content, or absent when the file is missing or can't be read.
std::optional<QByteArray> readFile(const QString &path);

} // namespace nimbrelle
