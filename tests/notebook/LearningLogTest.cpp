#include "notebook/LearningLog.h"

#include "frame/AppPaths.h"
#include "frame/AtomicFile.h"
#include "support/ManualClock.h"
#include "support/Printers.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace nimbrelle;

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
    m_log.add(LogKind::save, QStringLiteral("naïve/\"x\"\n"), QStringLiteral("example.org"));
    m_log.add(LogKind::rest, QStringLiteral("run"));
    EXPECT_EQ(readFile(m_paths.log),
        "{\"time\":\"2026-03-01T08:30:05Z\",\"kind\":\"save\",\"word\":\"naïve/\\\"x\\\"\\n\","
        "\"detail\":\"example.org\"}\n"
        "{\"time\":\"2026-03-01T08:30:05Z\",\"kind\":\"rest\",\"word\":\"run\"}\n");
}

TEST_F(LearningLogTest, KeepsWhateverStandsInTheFile)
{
    ASSERT_TRUE(replaceFile(m_paths.log, "\n{broken\n\n{\"kind\":1}\nlast without end"));
    const QStringList lines{
        QStringLiteral("{broken"), QStringLiteral("{\"kind\":1}"), QStringLiteral("last without end")};
    EXPECT_EQ(m_log.readLines(), lines);
    m_log.replaceAll(lines);
    EXPECT_EQ(m_log.readLines(), lines);
    m_log.replaceAll({});
    EXPECT_EQ(readFile(m_paths.log), QByteArray(""));
    EXPECT_EQ(m_log.readLines(), QStringList());
}

TEST_F(LearningLogTest, NeverEmptiesAFileThatItCannotOpen)
{
    ASSERT_TRUE(QDir(m_directory.path()).mkdir(QStringLiteral("learning-log.jsonl")));
    m_log.add(LogKind::rest, QStringLiteral("run"));
    EXPECT_TRUE(QFileInfo(m_paths.log).isDir());
    EXPECT_EQ(m_log.readLines(), QStringList());
}

} // namespace
