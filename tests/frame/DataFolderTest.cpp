#include "frame/DataFolder.h"

#include "frame/AppPaths.h"
#include "frame/AtomicFile.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

class DataFolder : public testing::Test {
protected:
    /// Its rights after it has been prepared.
    mode_t prepared(const QString &folder, FolderChoice choice = FolderChoice::users) const
    {
        prepareDataFolder(AppPaths(folder), choice);
        struct stat status { };
        return ::stat(QFile::encodeName(folder).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    /// One that others can enter, with these files.
    QString wideFolder(const QStringList &files)
    {
        const QString folder = m_directory.filePath(u"wide%1"_s.arg(++m_folders));
        QDir().mkpath(folder);
        for (const QString &file : files)
            replaceFile(folder + u'/' + file, "{}");
        ::chmod(QFile::encodeName(folder).constData(), 0755);
        return folder;
    }

    QTemporaryDir m_directory;

private:
    int m_folders = 0;
};

TEST_F(DataFolder, IsMadeForItsOwnerAloneWithItsParents)
{
    EXPECT_EQ(prepared(m_directory.filePath(u"a/b/Nimbrelle/"_s)), 0700U);
    EXPECT_TRUE(QDir(m_directory.filePath(u"a/b/Nimbrelle"_s)).exists());
}

TEST_F(DataFolder, OfAnEarlierVersionIsClosedToOthers)
{
    EXPECT_EQ(prepared(wideFolder({u"config.json"_s, u"words.json"_s, u".instance.lock"_s,
                  u".words.json.0123456789abcdef.tmp"_s, u"words 2026-03-01.json"_s})),
        0700U);
    EXPECT_EQ(prepared(wideFolder({u"words.json"_s, u"my report.txt"_s}), FolderChoice::ours), 0700U);
    const QString withBackups = wideFolder({u"config.json"_s});
    QDir(withBackups).mkdir(u"backups"_s);
    EXPECT_EQ(prepared(withBackups), 0700U);
}

TEST_F(DataFolder, ThatTheUserHasNamedAndUsesForOtherThingsIsLeftAlone)
{
    EXPECT_EQ(prepared(wideFolder({})), 0755U);
    EXPECT_EQ(prepared(wideFolder({u"config.json"_s, u"my report.txt"_s})), 0755U);
    const QString shared = wideFolder({u"config.json"_s});
    QDir(shared).mkdir(u"words"_s);
    EXPECT_EQ(prepared(shared), 0755U);
}

} // namespace
