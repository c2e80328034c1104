#include "frame/RecordFile.h"

#include "frame/AppConfig.h"
#include "support/ManualClock.h"
#include "support/TimeZone.h"

#include <QDir>
#include <QTemporaryDir>

#include <cerrno>
#include <gtest/gtest.h>
#include <limits>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

class RecordFile : public testing::Test {
protected:
    /// Long enough to be written in several pieces.
    static QList<AppConfig> manyConfigs()
    {
        QList<AppConfig> configs;
        for (int i = 0; i < 2000; ++i)
            configs.append(AppConfig());
        return configs;
    }

    QStringList files() const { return QDir(m_directory.path()).entryList(QDir::Files | QDir::Hidden); }

    QTemporaryDir m_directory;
    QString m_path = m_directory.filePath(u"list.json"_s);
};

TEST_F(RecordFile, OfAnyLengthReadsBackAndIsWhatTheCodecWrites)
{
    const QList<AppConfig> configs = manyConfigs();
    writeRecordFile(m_path, configs);
    EXPECT_GT(readFile(m_path)->size(), 1'000'000);
    EXPECT_EQ(readFile(m_path), encode(configs, TextForm::file));
    EXPECT_EQ(readRecordFile<QList<AppConfig>>(m_path), configs);
}

TEST_F(RecordFile, StaysAsItWasWhenTheEncodingFailsHalfWay)
{
    QList<AppConfig> configs = manyConfigs();
    writeRecordFile(m_path, configs.first(1));
    configs.last().dwellSeconds = std::numeric_limits<double>::quiet_NaN();
    writeRecordFile(m_path, configs);
    EXPECT_EQ(readRecordFile<QList<AppConfig>>(m_path)->size(), 1);
    EXPECT_EQ(files(), QStringList{u"list.json"_s}) << "a temporary was left";
}

TEST_F(RecordFile, ADamagedFileIsKeptBesideBeforeItIsWrittenOver)
{
    const TimeZone zone("Asia/Shanghai");
    const ManualClock clock;
    const auto damage = [&](const QByteArray &bytes) {
        DamagedFiles damaged(clock);
        EXPECT_TRUE(replaceFile(m_path, bytes));
        EXPECT_EQ(readRecordFile<AppConfig>(m_path, damaged), std::nullopt);
        for (int i = 0; i < 2; ++i)
            writeRecordFile(m_path, AppConfig(), damaged);
        EXPECT_TRUE(readRecordFile<AppConfig>(m_path, damaged));
    };
    DamagedFiles none(clock);
    EXPECT_EQ(readRecordFile<AppConfig>(m_path, none), std::nullopt);
    writeRecordFile(m_path, AppConfig(), none);
    EXPECT_EQ(files(), QStringList{u"list.json"_s}) << "what was missing is not damaged";
    damage("{\"first");
    damage("\xff");
    const QStringList kept{u"list.damaged-20260301-163005.json"_s, u"list.damaged-20260301-163005-2.json"_s};
    EXPECT_EQ(DamagedFiles::keptIn(m_directory.path()), kept);
    EXPECT_EQ(readFile(m_directory.filePath(kept[0])), "{\"first");
    EXPECT_EQ(readFile(m_directory.filePath(kept[1])), "\xff");
}

TEST_F(RecordFile, ADamagedFileThatCannotBeKeptIsNotWrittenOver)
{
    struct FullDisk : FileCalls {
        ssize_t write(int file, const char *bytes, std::size_t count) override
        {
            errno = ENOSPC;
            return isFull ? -1 : FileCalls::write(file, bytes, count);
        }
        int rename(const char *from, const char *to) override
        {
            errno = EACCES;
            return mayMove ? FileCalls::rename(from, to) : -1;
        }
        bool mayMove = false;
        bool isFull = true;
    } disk;
    const ManualClock clock;
    DataWriter writer(disk);
    DamagedFiles damaged(clock, writer);
    ASSERT_TRUE(replaceFile(m_path, "{"));
    ASSERT_EQ(readRecordFile<AppConfig>(m_path, damaged), std::nullopt);
    AppConfig config;
    writeRecordFile(m_path, config, damaged);
    EXPECT_EQ(readFile(m_path), "{");
    EXPECT_EQ(files(), QStringList{u"list.json"_s});
    EXPECT_EQ(writer.unwritten(), QList({UnwrittenFile{.path = m_path, .error = EACCES}}));
    disk.mayMove = true;
    writeRecordFile(m_path, config, damaged);
    EXPECT_EQ(readRecordFile<AppConfig>(m_path), std::nullopt)
        << "moved away, and nothing could take its place";
    EXPECT_EQ(writer.unwritten(), QList({UnwrittenFile{.path = m_path, .error = ENOSPC}}));
    disk.isFull = false;
    config.model = u"changed since"_s;
    writer.report(m_directory.filePath(u"another.json"_s), {});
    EXPECT_EQ(readRecordFile<AppConfig>(m_path), config) << "where there is room for another file";
    EXPECT_EQ(writer.unwritten(), QList<UnwrittenFile>());
    EXPECT_EQ(readFile(m_directory.filePath(DamagedFiles::keptIn(m_directory.path()).value(0))), "{");
}

TEST_F(RecordFile, NothingIsTriedAgainForAnOwnerThatHasEnded)
{
    DataWriter writer;
    const QString path = m_directory.filePath(u"gone/list.json"_s);
    const ManualClock clock;
    {
        DamagedFiles owner(clock, writer);
        const AppConfig config;
        writeRecordFile(path, config, owner);
    }
    QDir(m_directory.path()).mkdir(u"gone"_s);
    writer.retry();
    EXPECT_EQ(readFile(path), std::nullopt);
    EXPECT_EQ(writer.unwritten(), QList({UnwrittenFile{.path = path, .error = ENOENT}}));
}

} // namespace
