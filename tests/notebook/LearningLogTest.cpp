#include "notebook/LearningLog.h"

#include "frame/AppPaths.h"
#include "frame/AtomicFile.h"
#include "support/ManualClock.h"
#include "support/Printers.h"

#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

class LearningLogTest : public testing::Test {
protected:
    QTemporaryDir m_directory;
    AppPaths m_paths{m_directory.path()};
    ManualClock m_clock;
    LearningLog m_log{m_paths, m_clock};
};

TEST_F(LearningLogTest, AppendsCompactLinesInDeclaredOrder)
{
    m_log.add(LogKind::save, u"naïve/\"x\"\n"_s, u"example.org"_s);
    m_log.add(LogKind::rest, u"run"_s);
    EXPECT_EQ(readFile(m_paths.log),
        "{\"time\":\"2026-03-01T08:30:05Z\",\"kind\":\"save\",\"word\":\"naïve/\\\"x\\\"\\n\","
        "\"detail\":\"example.org\"}\n"
        "{\"time\":\"2026-03-01T08:30:05Z\",\"kind\":\"rest\",\"word\":\"run\"}\n");
}

TEST_F(LearningLogTest, KeepsWhateverStandsInTheFile)
{
    ASSERT_TRUE(replaceFile(
        m_paths.log, "\n{broken\n\n{\"word\":\"\xe4\xbd\n\xff\xfe\r\n{\"kind\":1}\nlast without end"));
    const QStringList lines{u"{broken"_s, u"{\"kind\":1}"_s, u"last without end"_s};
    EXPECT_EQ(m_log.readLines(), lines);
    const QByteArray unreadable = "{\"word\":\"\xe4\xbd\n\xff\xfe\r\n";
    for (int i = 0; i < 2; ++i) {
        m_log.replaceAll(m_log.readLines());
        EXPECT_EQ(readFile(m_paths.log), "{broken\n{\"kind\":1}\nlast without end\n" + unreadable);
    }
    m_log.replaceAll({});
    EXPECT_EQ(readFile(m_paths.log), unreadable);
    m_log.add(LogKind::rest, u"run"_s);
    EXPECT_EQ(m_log.readLines().size(), 1);
}

TEST_F(LearningLogTest, AnEventIsALineOfItsOwnAndWaitsForTheDisk)
{
    struct FullDisk : FileCalls {
        ssize_t write(int file, const char *bytes, std::size_t count) override
        {
            const std::size_t taken = isFull ? std::min(count, std::exchange(space, 0u)) : count;
            errno = ENOSPC;
            return taken == 0 ? -1 : FileCalls::write(file, bytes, taken);
        }
        std::size_t space = 0;
        bool isFull = true;
    } disk;
    DataWriter writer(disk);
    LearningLog log(m_paths, m_clock, writer);
    const QByteArray torn = "{\"torn\":\"\xe4\xbd";
    ASSERT_TRUE(replaceFile(m_paths.log, torn));
    for (const std::size_t space : {0u, 1u, 20u, 60u}) {
        disk.space = space;
        log.add(LogKind::rest, u"休息"_s);
        EXPECT_EQ(readFile(m_paths.log), torn);
    }
    EXPECT_EQ(writer.unwritten(), QList({UnwrittenFile{.path = m_paths.log, .error = ENOSPC}}));
    disk.isFull = false;
    writer.retry();
    EXPECT_EQ(m_log.readLines().size(), 4) << "those that waited";
    EXPECT_EQ(writer.unwritten(), QList<UnwrittenFile>());
    log.add(LogKind::rest, u"run"_s);
    EXPECT_EQ(readFile(m_paths.log)->count('\n'), 6);
    EXPECT_TRUE(m_log.readLines().last().contains(u"run"_s));
}

TEST_F(LearningLogTest, NeverEmptiesAFileThatItCannotOpen)
{
    ASSERT_TRUE(QDir(m_directory.path()).mkdir(u"learning-log.jsonl"_s));
    m_log.add(LogKind::rest, u"run"_s);
    m_log.replaceAll({u"{}"_s});
    EXPECT_TRUE(QFileInfo(m_paths.log).isDir());
    EXPECT_EQ(m_log.readLines(), QStringList());
}

} // namespace
