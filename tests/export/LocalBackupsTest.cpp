#include "export/LocalBackups.h"

#include "export/Backup.h"
#include "frame/LocalDateTime.h"
#include "support/Await.h"
#include "support/FakeBackground.h"
#include "support/FaultyCalls.h"
#include "support/Notebook.h"

#include <QFileInfo>

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

KeptBackup at(const char *time, BackupOccasion occasion)
{
    return *KeptBackup::fromName(KeptBackup::nameFor(
        QDateTime::fromString(QString::fromLatin1(time), u"yyyy-MM-dd HH:mm"_s), occasion, 1));
}

/// A device that keeps backups, on a disk that may be full.
struct LocalBackupsTest : testing::Test, protected Notebook {
    QStringList texts() const
    {
        QStringList all;
        for (const KeptBackup &backup : backups.kept())
            all.append(backup.text(localDateTime(clock.now())));
        return all;
    }
    /// What is said of an import; empty for one that may go on.
    QString import(const QString &source = {})
    {
        QString said;
        const auto asked = [&]() -> QCoro::Task<> {
            try {
                co_await backups.beforeImport(source);
            } catch (const Failure &failure) {
                said = failure.text();
            }
        };
        asked();
        return said;
    }
    Backup::Content content(qsizetype which) const
    {
        return Backup::read(backups.fileOf(backups.kept().at(which)));
    }

    FaultyCalls disk;
    DataWriter writer{disk};
    FakeBackground background;
    LocalBackups backups{paths, clock, background, writer};
};

} // namespace

TEST_F(LocalBackupsTest, IsKeptBeforeTheFirstSyncOfADayAndBeforeEachImport)
{
    backups.beforeSync();
    EXPECT_EQ(import(), QString());
    EXPECT_THAT(backups.kept(), IsEmpty()) << "there is no notebook yet";
    save("run");
    import();
    clock.advance(1min);
    backups.beforeSync();
    save("deploy");
    clock.advance(6h);
    backups.beforeSync();
    EXPECT_THAT(
        texts(), ElementsAre(u"3 月 1 日 16:31 · 1 个词 · 同步前"_s, u"3 月 1 日 16:30 · 1 个词 · 导入前"_s));
    clock.advance(2h); // past midnight
    backups.beforeSync();
    EXPECT_EQ(texts().first(), u"3 月 2 日 00:31 · 2 个词 · 同步前"_s);
    EXPECT_THAT(content(0).notebook.words, SizeIs(2));
    EXPECT_THAT(content(1).notebook.words, SizeIs(1));
    const auto ofOthers = QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    EXPECT_EQ(QFileInfo(paths.backups).permissions() & ofOthers, 0);
    EXPECT_EQ(QFileInfo(backups.fileOf(backups.kept().first())).permissions() & ofOthers, 0);
}

TEST_F(LocalBackupsTest, SevenDaysAreKeptAndOfEachTheFirstAndLastOfEitherKind)
{
    save("run");
    ASSERT_TRUE(QDir().mkpath(paths.backups));
    const QString own = paths.backups + u"/nimbrelle-2026-02-01.zip"_s; // put there by hand
    ASSERT_TRUE(replaceFile(own, "mine"));
    for (int day = 0; day < 9; ++day) {
        backups.beforeSync();
        for (int hour = 0; hour < 4; ++hour) {
            import();
            clock.advance(1h);
        }
        clock.advance(20h);
    }
    const QList<KeptBackup> kept = backups.kept();
    EXPECT_THAT(kept, SizeIs(21));
    EXPECT_THAT(texts().first(3),
        ElementsAre(u"3 月 9 日 19:30 · 1 个词 · 导入前"_s, u"3 月 9 日 16:30 · 1 个词 · 导入前"_s,
            u"3 月 9 日 16:30 · 1 个词 · 同步前"_s));
    EXPECT_EQ(kept.last().text(localDateTime(clock.now())), u"3 月 3 日 16:30 · 1 个词 · 同步前"_s);
    EXPECT_EQ(readFile(own), "mine");

    EXPECT_EQ(kept.last().text(localDateTime(clock.now()).addYears(1)),
        u"2026 年 3 月 3 日 16:30 · 1 个词 · 同步前"_s);

    const QString oldest = backups.fileOf(kept.last());
    import(oldest); // on a tenth day
    EXPECT_TRUE(QFileInfo::exists(oldest)) << "it is just being brought back";
    clock.advance(1s);
    import();
    EXPECT_FALSE(QFileInfo::exists(oldest));
}

TEST_F(LocalBackupsTest, ImportsInOneSecondLeaveTheNotebookOfBeforeThem)
{
    save("run");
    import();
    store.remove(word("run").id);
    save("walk"); // as much as before
    import();
    ASSERT_THAT(backups.kept(), SizeIs(1));
    EXPECT_EQ(content(0).notebook.words.first().headword, u"run"_s);
}

TEST_F(LocalBackupsTest, AClockThatWasWrongCostsNoGoodBackup)
{
    using enum BackupOccasion;
    QList<KeptBackup> all;
    for (const char *time : {"2036-01-01 10:00", "2026-03-09 10:00", "2026-03-08 10:00", "2026-03-07 10:00",
             "2026-03-06 10:00", "2026-03-05 10:00", "2026-03-04 10:00", "2026-03-03 10:00"})
        all.append(at(time, sync));
    EXPECT_THAT(LocalBackups::superfluous(all, all.at(1)), ElementsAre(all.at(0).name));
    const KeptBackup early = at("1970-01-01 08:00", sync);
    EXPECT_THAT(LocalBackups::superfluous(all.mid(1, 6) << early, early), IsEmpty());
    const KeptBackup later = at("2026-03-09 12:00", import), now = at("2026-03-09 11:00", import),
                     first = at("2026-03-09 10:00", import);
    EXPECT_THAT(LocalBackups::superfluous({later, now, first}, now), IsEmpty())
        << "the one just made stays, though the clock went back";
    EXPECT_THAT(LocalBackups::superfluous({later, now, first}, later), ElementsAre(now.name));
}

TEST_F(LocalBackupsTest, AFullDiskStopsAnImportButNoSync)
{
    save("run");
    disk.arm(Fault::cutsShort, 0);
    backups.beforeSync();
    ASSERT_THAT(writer.unwritten(), SizeIs(1));
    EXPECT_EQ(writer.unwritten().first(), (UnwrittenFile{.path = paths.backups, .error = ENOSPC}));
    EXPECT_THAT(backups.kept(), IsEmpty());
    backups.beforeSync(); // there is room again
    EXPECT_THAT(writer.unwritten(), IsEmpty());
    EXPECT_THAT(backups.kept(), SizeIs(1)) << "it is made up for on the same day";

    disk = FaultyCalls();
    disk.arm(Fault::cutsShort, 0);
    EXPECT_EQ(import(), u"没有导入：要先留一份备份，但是写不进 "_s + paths.backups + u"（磁盘满了）"_s);
    EXPECT_THAT(writer.unwritten(), IsEmpty()) << "it was told already";
    EXPECT_THAT(backups.kept(), SizeIs(1));
    EXPECT_EQ(QDir(paths.backups).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(LocalBackupsTest, AFileThatCannotBeReadStopsAnImportAndIsToldAtASync)
{
    save("run");
    ASSERT_TRUE(QDir().mkdir(paths.notes));
    backups.beforeSync();
    EXPECT_THAT(writer.unwritten(), ElementsAre(UnwrittenFile{.path = paths.backups, .error = EIO}));
    EXPECT_EQ(import(), u"没有导入：要先留一份备份，但是读不了 notes.json，备份会不完整"_s);
    EXPECT_THAT(backups.kept(), IsEmpty());
}

} // namespace nimbrelle
