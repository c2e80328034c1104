#include "frame/RecordFile.h"

#include "frame/AppConfig.h"

#include <QDir>
#include <QTemporaryDir>

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

} // namespace
