#include "frame/AtomicFile.h"

#include "support/FaultyCalls.h"

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
    int failed = 0;
    for (const Fault fault : {Fault::fails, Fault::cutsShort}) {
        for (int at = 0;; ++at) {
            ASSERT_TRUE(replaceFile(path(), "the old content"));
            FaultyCalls calls;
            calls.arm(fault, at);
            const WriteResult result = replaceFile(path(), "the new content", FileMode::ownerOnly, calls);
            if (!calls.wasReached())
                break;
            EXPECT_EQ(readFile(path()), QByteArray(result ? "the new content" : "the old content")) << at;
            EXPECT_EQ(result.error, result ? 0 : ENOSPC) << at;
            EXPECT_EQ(files(), QStringList{u"words.json"_s}) << "a temporary was left";
            failed += result ? 0 : 1;
        }
    }
    EXPECT_EQ(failed, 7) << "open, lock, mode, write, flush, rename, and a write cut short";
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
