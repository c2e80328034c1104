#include "frame/AtomicFile.h"

#include <QDir>
#include <QTemporaryDir>

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

enum class Step { open, write, shortWrite, flush, rename };

/// Fails at one step, as a full disk or a read-only directory would.
class FailingCalls : public FileCalls {
public:
    explicit FailingCalls(Step step) : m_step(step) { }

    int open(const char *path, int flags, mode_t mode) override
    {
        return fails(Step::open) ? -1 : FileCalls::open(path, flags, mode);
    }
    ssize_t write(int file, const char *bytes, std::size_t count) override
    {
        if (fails(Step::write) || (m_writes++ == 1 && fails(Step::shortWrite)))
            return -1;
        return FileCalls::write(file, bytes, std::min<std::size_t>(count, 3));
    }
    int flush(int file) override { return fails(Step::flush) ? -1 : FileCalls::flush(file); }
    int rename(const char *from, const char *to) override
    {
        return fails(Step::rename) ? -1 : FileCalls::rename(from, to);
    }

private:
    bool fails(Step step) const
    {
        errno = ENOSPC;
        return m_step == step;
    }

    Step m_step;
    int m_writes = 0;
};

/// Interrupts the first write and then takes one byte at a time.
class SlowCalls : public FileCalls {
public:
    ssize_t write(int file, const char *bytes, std::size_t) override
    {
        if (!std::exchange(m_interrupted, true)) {
            errno = EINTR;
            return -1;
        }
        return FileCalls::write(file, bytes, 1);
    }

private:
    bool m_interrupted = false;
};

class AtomicFile : public testing::Test {
protected:
    QString path(const char *name = "words.json") const
    {
        return m_directory.filePath(QString::fromLatin1(name));
    }

    mode_t modeOf(const QString &file) const
    {
        struct stat status { };
        ::stat(QFile::encodeName(file).constData(), &status);
        return status.st_mode & 07777;
    }

    QStringList files() const
    {
        return QDir(m_directory.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    QTemporaryDir m_directory;
};

TEST_F(AtomicFile, LeavesTheOldFileWhenAnyStepFails)
{
    ASSERT_TRUE(replaceFile(path(), "the old content"));
    for (const Step step : {Step::open, Step::write, Step::shortWrite, Step::flush, Step::rename}) {
        FailingCalls calls(step);
        EXPECT_FALSE(replaceFile(path(), "the new content", FileMode::ordinary, calls));
        EXPECT_EQ(readFile(path()), "the old content");
        EXPECT_EQ(files(), QStringList{u"words.json"_s}) << "a temporary was left";
    }
    SlowCalls slow;
    EXPECT_TRUE(replaceFile(path(), "the new content", FileMode::ordinary, slow));
    EXPECT_EQ(readFile(path()), "the new content");
}

TEST_F(AtomicFile, FollowsTheUmaskOrKeepsSecretsFromTheFirstByte)
{
    struct ModeSpy : FileCalls {
        ssize_t write(int file, const char *bytes, std::size_t count) override
        {
            struct stat status { };
            ::fstat(file, &status);
            atFirstByte = status.st_mode & 07777;
            return FileCalls::write(file, bytes, count);
        }
        mode_t atFirstByte = 0;
    } spy;

    const mode_t before = ::umask(0027);
    EXPECT_TRUE(replaceFile(path(), "x"));
    EXPECT_EQ(modeOf(path()), 0640u);
    ::umask(0277);
    EXPECT_TRUE(replaceFile(path("config.json"), "secret", FileMode::ownerOnly, spy));
    EXPECT_EQ(spy.atFirstByte, 0600u);
    ::umask(before);
    ::chmod(QFile::encodeName(path("config.json")).constData(), 0644);
    EXPECT_TRUE(replaceFile(path("config.json"), "secret", FileMode::ownerOnly));
    EXPECT_EQ(modeOf(path("config.json")), 0600u);
}

TEST_F(AtomicFile, WritesThroughALink)
{
    const QString target = path("elsewhere.json");
    ASSERT_TRUE(QFile::link(target, path()));
    EXPECT_TRUE(replaceFile(path(), "first")) << "a link to nothing yet";
    EXPECT_TRUE(replaceFile(path(), "second"));
    EXPECT_EQ(readFile(target), "second");
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
}

TEST_F(AtomicFile, SweepsOnlyAbandonedTemporaries)
{
    for (const char *name : {".words.json.0123456789abcdef.tmp", ".words.json.fedcba9876543210.tmp",
             ".notes.tmp", "words.json.0123456789abcdef.tmp", ".words.json.0123456789ABCDEF.tmp"}) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    const int used =
        ::open(QFile::encodeName(path(".words.json.fedcba9876543210.tmp")).constData(), O_WRONLY);
    ASSERT_EQ(::flock(used, LOCK_EX), 0);
    removeLeftovers(m_directory.path());
    EXPECT_EQ(files().size(), 4);
    EXPECT_FALSE(QFile::exists(path(".words.json.0123456789abcdef.tmp")));
    ::close(used);
    removeLeftovers(m_directory.path());
    EXPECT_FALSE(QFile::exists(path(".words.json.fedcba9876543210.tmp")));
    removeLeftovers(path("missing"));
}

} // namespace
