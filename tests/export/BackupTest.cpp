#include "export/Backup.h"

#include "export/Archive.h"
#include "export/BackupMerge.h"
#include "export/ExportFile.h"
#include "frame/RecordFile.h"
#include "support/FaultyCalls.h"
#include "support/Notebook.h"
#include "support/Printers.h"
#include "support/Words.h"
#include "sync/BundleForm.h"
#include "sync/SyncMerge.h"

#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

struct Device : Notebook {
    CoachHistory coach{paths, clock};
    QString backup = directory.filePath(u"out/backup.zip"_s);

    Device() { QDir(directory.path()).mkdir(u"out"_s); }

    /// A notebook with something in each file.
    void live()
    {
        configure([](AppConfig &settings) {
            settings.apiKey = u"sk-secret-key"_s;
            settings.syncServer = u"https://home.example"_s;
            settings.syncToken = u"secret-token"_s;
            settings.sessionSize = 21;
        });
        Explanation run = explained("run", "He ran home.");
        run.grammar = u"pastSimple"_s;
        run.affixes = QStringList{u"re-"_s};
        store.save(run, page("https://a.example/x"));
        store.addSentenceNote({.id = QUuid::createUuid(), .question = u"问"_s, .addedAt = clock.now()});
        store.remove(save("gone"));
        coach.put(u"2026-03-01"_s, {{.id = QUuid::createUuid(), .fromCoach = true, .text = u"早"_s}});
    }
    void write() { Backup::write(paths, backup, clock.now()); }
    BackupPlan bringBack(const QString &file)
    {
        const Backup::Content content = Backup::read(file);
        return nimbrelle::bringBack(mergeOf(store.snapshot(), content), content.coach, store, coach);
    }
    QStringList headwords() const
    {
        QStringList names;
        for (const WordEntry &word : store.entries())
            names.append(word.headword);
        names.sort();
        return names;
    }
};

/// Another one whenever the file is written.
ino_t inodeOf(const QString &file)
{
    struct stat status { };
    EXPECT_EQ(::stat(QFile::encodeName(file).constData(), &status), 0);
    return status.st_ino;
}

QMap<QString, QByteArray> unpacked(const QString &file)
{
    QMap<QString, QByteArray> entries;
    Archive::read(readFile(file).value_or(QByteArray()),
        [&entries](const Archive::Entry &entry) { entries[entry.name] = entry.bytes; });
    return entries;
}

QByteArray packed(const QList<Archive::Entry> &entries)
{
    QByteArray bytes;
    Archive::write(entries, [&bytes](QByteArrayView piece) { bytes.append(piece); });
    return bytes;
}

/// What is said of an archive that is refused; empty for one that is not.
QString refusal(const QByteArray &archive)
{
    try {
        Backup::parse(archive);
        return {};
    } catch (const Failure &failure) {
        return failure.text();
    }
}

const Archive::Entry manifest{
    .name = u"nimbrelle-backup.json"_s, .bytes = R"({"format": 1, "madeAt": "2026-03-01T08:30:05Z"})"};

} // namespace

TEST(Backup, HoldsEachDataFileButNeitherKeyNorToken)
{
    Device device;
    device.live();
    device.write();
    const auto entries = unpacked(device.backup);
    for (const QString &path : device.paths.files()) {
        const QString name = QFileInfo(path).fileName();
        EXPECT_EQ(entries.contains(name), QFileInfo::exists(path)) << name.toStdString();
        if (name != u"config.json"_s)
            EXPECT_EQ(entries.value(name), readFile(path).value_or(QByteArray())) << name.toStdString();
        EXPECT_FALSE(entries.value(name).contains("secret")) << name.toStdString();
    }
    EXPECT_EQ(decode<AppConfig>(entries.value(u"config.json"_s))->sessionSize, 21);
    EXPECT_EQ(QFileInfo(device.backup).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);
}

TEST(Backup, ComesBackWholeIntoAnEmptyNotebookAndOnlyOnce)
{
    Device device, fresh;
    device.live();
    device.write();
    const BackupPlan plan = mergeOf(fresh.store.snapshot(), Backup::read(device.backup)).plan;
    EXPECT_TRUE(fresh.entriesOnDisk().isEmpty()) << "a plan changes nothing";
    EXPECT_EQ(plan.added, 1);
    const BackupPlan done = fresh.bringBack(device.backup);
    EXPECT_EQ(done.added, 1);
    const auto mergedForm = [](const Device &which) {
        const SyncBundle whole = which.store.snapshot();
        return QString::fromUtf8(BundleForm::json(SyncMerge::merge(whole, whole)));
    };
    EXPECT_EQ(mergedForm(fresh), mergedForm(device));
    EXPECT_EQ(fresh.entriesOnDisk(), device.entriesOnDisk());
    EXPECT_EQ(readRecordFile<QList<CoachDay>>(fresh.paths.coach), device.coach.days());
    EXPECT_EQ(fresh.config.config().sessionSize, 21);
    EXPECT_EQ(fresh.config.config().syncServer, QString()) << "what describes the other device stays there";

    const ino_t before = inodeOf(fresh.paths.words);
    EXPECT_TRUE(fresh.bringBack(device.backup).changesNothing());
    EXPECT_EQ(inodeOf(fresh.paths.words), before) << "nothing to do writes nothing";
}

TEST(Backup, IsMergedAsASyncWouldAndSaysSoBefore)
{
    Device device;
    const QUuid kept = device.save("kept"), removed = device.save("removed");
    device.save("changed");
    device.coach.put(u"2026-02-28"_s, {{.id = QUuid::createUuid(), .text = u"earlier"_s}});
    device.coach.put(u"2026-03-01"_s, {{.id = QUuid::createUuid(), .text = u"theirs"_s}});
    device.coach.put(u"2036-03-01"_s, {{.id = QUuid::createUuid(), .text = u"by a wrong clock"_s}});
    device.write();
    device.clock.advance(24h);
    device.store.remove(removed);
    device.store.recordLookup(Notebook::explained("changed", "A later sentence."), {});
    device.save("newer");
    device.coach.put(u"2026-03-02"_s, {{.id = QUuid::createUuid(), .text = u"later"_s}});
    const SyncBundle before = BundleForm::normalized(device.store.snapshot());
    const BackupPlan plan = device.bringBack(device.backup);
    EXPECT_EQ(BundleForm::normalized(device.store.snapshot()).words, before.words);
    EXPECT_THAT(device.headwords(), ElementsAre(u"changed"_s, u"kept"_s, u"newer"_s));
    EXPECT_THAT(plan.lines(),
        ElementsAre(u"2026 年 3 月 1 日 16:30 的备份，有 3 个词"_s, u"1 个词在这里删除过，不会回来"_s,
            u"这里什么都不缺，不用导入"_s));

    Device other; // knows nothing of all that, but has a word of the same spelling and one of its own
    other.clock.advance(1h);
    other.save("Kept");
    other.save("own");
    other.coach.put(u"2026-03-01"_s, {{.id = QUuid::createUuid(), .text = u"mine"_s}});
    const BackupPlan merged = other.bringBack(device.backup);
    EXPECT_THAT(other.headwords(), ElementsAre(u"changed"_s, u"kept"_s, u"own"_s, u"removed"_s));
    EXPECT_EQ(merged.added, 2);
    EXPECT_EQ(merged.changed, 1);
    QStringList said;
    const auto days = readRecordFile<QList<CoachDay>>(other.paths.coach).value();
    for (const CoachDay &day : days)
        said.append(day.messages.first().text);
    EXPECT_THAT(said, ElementsAre(u"earlier"_s, u"mine"_s))
        << "in order of the days, and none from the future";
    EXPECT_NE(other.store.find(kept), nullptr) << "the older copy keeps its name for all devices";
}

TEST(Backup, ATombstoneOfTheBackupTakesItsWordAlong)
{
    Device device, copy;
    const QUuid id = device.save("run");
    device.write();
    copy.bringBack(device.backup);
    device.store.remove(id);
    device.write();
    const BackupPlan plan = mergeOf(copy.store.snapshot(), Backup::read(device.backup)).plan;
    EXPECT_THAT(plan.lines(), Contains(u"去掉 1 个词：备份里已经删除"_s));
    copy.bringBack(device.backup);
    EXPECT_TRUE(copy.store.entries().isEmpty());
    EXPECT_EQ(copy.store.deleted().size(), 1);
}

TEST(Backup, WhatItOnlyTakesAwayIsNotCalledNew)
{
    Device device, copy, stranger;
    const AINote note{.id = QUuid::createUuid(), .question = u"问"_s, .addedAt = device.clock.now()};
    device.store.addSentenceNote(note);
    const QUuid run = device.store.save(Notebook::explained("run", "He ran home."), {}).entry.id;
    device.write();
    copy.bringBack(device.backup);
    stranger.save("own");
    device.store.deleteSentenceNote(note.id);
    device.store.deleteExample(device.word("run").examples.first().id, run);
    device.write();
    const BackupPlan plan = copy.bringBack(device.backup);
    EXPECT_THAT(plan.lines().mid(1), ElementsAre(u"去掉 2 条笔记和句子：备份里已经删除"_s));
    EXPECT_EQ(plan.resultText(), u"已导入备份：新增 0 个词，补全 0 个，去掉 2 条笔记和句子"_s);
    EXPECT_TRUE(copy.store.sentenceNotes().isEmpty());

    device.store.remove(run);
    device.write();
    EXPECT_EQ(copy.bringBack(device.backup).resultText(), u"已导入备份：新增 0 个词，补全 0 个，去掉 1 个"_s);
    EXPECT_THAT(stranger.bringBack(device.backup).lines(), Contains(u"另外记下 3 处备份里的删除"_s));
}

TEST(Backup, CoachDaysThatFindNoRoomAreNotPromised)
{
    Device device, other;
    for (int day = 1; day <= 28; ++day) {
        device.coach.put(u"2026-01-%1"_s.arg(day, 2, 10, QChar(u'0')), {{.id = QUuid::createUuid()}});
        other.coach.put(u"2026-02-%1"_s.arg(day, 2, 10, QChar(u'0')), {{.id = QUuid::createUuid()}});
    }
    device.write();
    EXPECT_EQ(other.bringBack(device.backup).coachDays, 1);
    EXPECT_EQ(other.coach.days().first().day, u"2026-01-28"_s);
    EXPECT_TRUE(other.bringBack(device.backup).changesNothing());
}

TEST(Backup, NoneIsMadeWithoutAFileThatIsThere)
{
    Device device;
    device.live();
    ASSERT_TRUE(QFile::remove(device.paths.notes) && QDir().mkdir(device.paths.notes));
    try {
        device.write();
        ADD_FAILURE();
    } catch (const Failure &failure) {
        EXPECT_EQ(failure.text(), u"读不了 notes.json，备份会不完整"_s);
    }
    EXPECT_FALSE(QFileInfo::exists(device.backup));
}

TEST(Backup, AFileThatCannotBeReadGoesAlongAsItIsButOneWithSecretsDoesNot)
{
    Device device;
    device.live();
    ASSERT_TRUE(replaceFile(device.paths.words, "[{"));
    ASSERT_TRUE(replaceFile(device.paths.config, "{\"apiKey\": \"sk-secret-key\", "));
    EXPECT_EQ(Backup::write(device.paths, device.backup, device.clock.now()),
        u"已导出备份；words.json 读不出来，原样放在里面；config.json 读不出来，里面可能有密钥，没有放进去"_s);
    const auto entries = unpacked(device.backup);
    EXPECT_EQ(entries.value(u"damaged/words.json"_s), "[{");
    EXPECT_FALSE(entries.contains(u"config.json"_s) || entries.contains(u"damaged/config.json"_s));
    EXPECT_EQ(Backup::read(device.backup).notebook.notes.size(), 1) << "the rest comes back";
}

// Whatever byte is lost or changed, it is noticed, or it changes nothing.
TEST(Backup, DamageIsNoticed)
{
    const QByteArray whole = packed(
        {manifest, {.name = u"deleted.json"_s, .bytes = R"([{"at": "2026-03-01T08:30:05Z", "id": "A"}])"}});
    const SyncBundle expected = Backup::parse(whole).notebook;
    ASSERT_EQ(expected.deleted.size(), 1);
    for (qsizetype size = 0; size < whole.size(); ++size)
        EXPECT_NE(refusal(whole.first(size)), QString()) << "cut at " << size;
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x24);
        if (refusal(damaged).isEmpty())
            EXPECT_EQ(Backup::parse(damaged).notebook, expected) << "changed at " << at;
    }
}

TEST(Backup, WhatIsNoBackupOfOursIsRefused)
{
    const QByteArray list = "[]";
    QList<Archive::Entry> crowd{manifest};
    for (int i = 0; i < 3000; ++i)
        crowd.append({.name = u"words%1.json"_s.arg(i), .bytes = list});
    const std::pair<QByteArray, QString> cases[]{
        {"", u"这个文件不是 zip 压缩文件"_s},
        {"hello", u"这个文件不是 zip 压缩文件"_s},
        {"PK\3\4 and nothing more", u"这个文件不完整，或者已经损坏"_s},
        {packed({{.name = u"words.json"_s, .bytes = list}}), u"这不是 Nimbrelle 的备份"_s},
        {packed({{.name = manifest.name, .bytes = "{"}}), u"这不是 Nimbrelle 的备份"_s},
        {packed({{.name = manifest.name, .bytes = R"({"format": 2, "madeAt": "2026-03-01T08:30:05Z"})"},
             {.name = u"later.db"_s, .bytes = {}}}),
            u"这个备份来自更新的版本，请先更新 Nimbrelle"_s},
        {packed({manifest, {.name = u"words.json"_s, .bytes = "[{}]"}}),
            u"备份里的 words.json 已经损坏，没有导入"_s},
        {packed(
             {manifest, {.name = u"words.json"_s, .bytes = list}, {.name = u"words.json"_s, .bytes = list}}),
            u"备份里有两个 words.json"_s},
        {packed({manifest, {.name = u"../words.json"_s, .bytes = list}}),
            u"备份里有不该有的文件，没有导入"_s},
        {packed({manifest, {.name = u"/etc/passwd"_s, .bytes = list}}), u"备份里有不该有的文件，没有导入"_s},
        {packed({manifest, {.name = u"damaged/../words.json"_s, .bytes = list}}),
            u"备份里有不该有的文件，没有导入"_s},
        {packed(crowd), u"备份里有不该有的文件，没有导入"_s},
    };
    for (const auto &[archive, text] : cases)
        EXPECT_EQ(refusal(archive), text);
    EXPECT_EQ(refusal(packed({manifest})), QString()) << "one of an empty notebook is one";
}

TEST(Backup, AnArchiveThatUnpacksWithoutEndIsLeft)
{
    const QByteArray archive = packed({{.name = u"a"_s, .bytes = QByteArray(1 << 20, 'x')},
        {.name = u"b"_s, .bytes = QByteArray(1 << 20, 'x')}, {.name = u"c"_s, .bytes = "c"}});
    const auto taken = [&archive](const Archive::Limits &limits) {
        QStringList names;
        try {
            Archive::read(
                archive, [&names](const Archive::Entry &entry) { names.append(entry.name); }, limits);
        } catch (const Failure &failure) {
            names.append(failure.text());
        }
        return names;
    };
    EXPECT_THAT(taken({}), ElementsAre(u"a"_s, u"b"_s, u"c"_s));
    EXPECT_THAT(taken({.bytes = 3 << 19}), ElementsAre(u"a"_s, u"这个文件解开后太大"_s));
    EXPECT_THAT(taken({.entries = 2}), ElementsAre(u"a"_s, u"b"_s, u"这个文件里的东西太多"_s));
}

TEST(ExportFile, AFullDiskLeavesTheOldFileAndTellsWhy)
{
    Device device;
    device.save("run");
    const ExportSource source{.paths = device.paths,
        .words = device.store.entries(),
        .config = device.config.config(),
        .now = device.clock.now()};
    for (const ExportKind kind :
        {ExportKind::csv, ExportKind::anki, ExportKind::ankiCloze, ExportKind::backup}) {
        ASSERT_TRUE(replaceFile(device.backup, "old"));
        FaultyCalls disk;
        disk.arm(Fault::cutsShort, 0);
        try {
            exportTo(device.backup, kind, source, disk);
            ADD_FAILURE();
        } catch (const Failure &failure) {
            EXPECT_EQ(failure.text(), u"写不进 "_s + device.backup + u"：磁盘满了"_s);
        }
        EXPECT_EQ(readFile(device.backup), "old");
        exportTo(device.backup, kind, source);
        EXPECT_NE(readFile(device.backup), "old");
    }
    EXPECT_EQ(QDir(device.directory.filePath(u"out"_s)).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST(ExportFile, ADataFileIsNeverWrittenOver)
{
    Device device;
    device.save("run");
    QFile::link(device.paths.words, device.directory.filePath(u"out/link"_s));
    QFile::link(device.directory.path(), device.directory.filePath(u"out/folder"_s));
    const ExportSource source{.paths = device.paths, .words = {}, .config = {}, .now = device.clock.now()};
    for (const QString &file : {device.paths.words, device.directory.filePath(u"new.csv"_s),
             device.directory.filePath(u"out/link"_s), device.directory.filePath(u"out/folder/words.json"_s),
             device.directory.filePath(u"out/../words.json"_s), QString()})
        EXPECT_THROW(exportTo(file, ExportKind::csv, source), Failure) << file.toStdString();
    EXPECT_EQ(device.entriesOnDisk().size(), 1);
}

} // namespace nimbrelle
