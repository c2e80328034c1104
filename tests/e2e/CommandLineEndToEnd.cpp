#include "Programs.h"
#include "frame/AppConfig.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/RecordFile.h"
#include "notebook/LearningLog.h"
#include "notebook/WordEntry.h"
#include "shell/GrowthGenerator.h"
#include "support/Printers.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

QString providerOf(const RunningServer &practice)
{
    return practice.firstLine().section(u' ', -1);
}

class CommandLine : public testing::Test {
protected:
    QList<WordEntry> words() const
    {
        return readRecordFile<QList<WordEntry>>(device.path(u"words.json"_s)).value_or(QList<WordEntry>());
    }

    QStringList headwords() const
    {
        QStringList names;
        for (const WordEntry &word : words())
            names.append(word.headword);
        return names;
    }

    Device device;
};

TEST_F(CommandLine, SaysNothingOnStandardErrorInABareEnvironment)
{
    const std::pair<const char *, int> modes[]{{"--selftest-ocr", 0}, {"--selftest-review", 0},
        {"--selftest-spelling", 0}, {"--selftest-menubar", 0}, {"--selftest-spellpractice", 0},
        {"--selftest-lookup", 0}, {"--selftest-config", 0}, {"--selftest-studystamp", 0},
        {"--selftest-merge", 0}, {"--sync-now", 0}, {"--selftest-fsrs", 0}, {"--selftest-ask", 0},
        {"--selftest-coach", 0}, {"--selftest-coach-ai", 0}, {"--selftest-explain", 0}};
    for (const auto &[mode, code] : modes) {
        for (const char *locale : {"LC_ALL=", "LC_ALL=C", "LC_ALL=de_DE.UTF-8"}) {
            const Ended ended = device({QString::fromLatin1(mode)}, {QString::fromLatin1(locale)});
            EXPECT_EQ(ended.errors, QString()) << mode << ' ' << locale;
            EXPECT_EQ(ended.code, code) << mode << '\n' << ended.output.toStdString();
            EXPECT_FALSE(ended.output.isEmpty()) << mode;
        }
    }
}

TEST_F(CommandLine, PrintsTheSameNumbersInEveryLocale)
{
    const Ended ended = device({u"--selftest-fsrs"_s}, {u"LC_ALL=de_DE.UTF-8"_s});
    EXPECT_EQ(ended.lines().value(3),
        u"总是费劲：hard→1.2天(S=1.2,D=6.5,L1) hard→1.8天(S=1.8,D=7.0,L1) "
        "hard→2.6天(S=2.6,D=7.5,L1) hard→3.5天(S=3.5,D=7.9,L1)"_s);
}

TEST_F(CommandLine, DrawsItsIconsWithoutADisplay)
{
    const QString folder = device.path(u"icons"_s);
    const Ended drawn = device({u"--render-icon"_s, folder});
    EXPECT_EQ(drawn.code, 0);
    EXPECT_EQ(drawn.output + drawn.errors, QString());
    EXPECT_EQ(QDir(folder).entryList({u"*.png"_s}).size(), 11);

    const QString blocked = folder + u"/menubar-preview.png"_s;
    const Ended failed = device({u"--render-icon"_s, blocked});
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.errors, QString());
    EXPECT_TRUE(failed.output.startsWith(u"生成图标失败："_s + blocked));
}

TEST_F(CommandLine, AddsWordsThroughTheProvider)
{
    const RunningServer practice(QStringLiteral(NIMBRELLE_PRACTICE), {u"--delay-ms"_s, u"0"_s});
    device.useProvider(providerOf(practice), u"practice"_s);
    const QStringList arguments{u"--add-spelling"_s, u"reluctant | Hotel Califonil | 放弃 ||"_s};
    const Ended first = device(arguments);
    EXPECT_EQ(first.code, 0);
    EXPECT_EQ(first.lines().size(), 3) << first.output.toStdString();
    EXPECT_TRUE(first.lines().value(1).startsWith(u"已加入常拼：Hotel Califonil → Hotel California（"_s));
    EXPECT_THAT(headwords(), ElementsAre(u"give up"_s, u"Hotel California"_s, u"reluctant"_s));
    const WordEntry giveUp = words().value(0);
    EXPECT_EQ(giveUp.spellPractice, true);
    EXPECT_EQ(giveUp.sourceKeys, QStringList{u"常拼"_s});
    EXPECT_EQ(giveUp.inflections->value(u"past"_s), u"gave up"_s);
    EXPECT_EQ(giveUp.forms->size(), 1);
    EXPECT_EQ(giveUp.encounterDays->size(), 1);

    EXPECT_EQ(device(arguments).code, 0);
    EXPECT_EQ(words().size(), 3) << "a word already saved is not saved again";
    const auto log = readFile(device.path(u"learning-log.jsonl"_s));
    EXPECT_EQ(log->count('\n'), 6);
}

TEST_F(CommandLine, GoesOnBehindAFailureAndStillEndsWell)
{
    const RunningServer practice(QStringLiteral(NIMBRELLE_PRACTICE), {});
    const std::pair<const char *, const char *> failures[]{
        {"wrong", "API key 不正确，请在设置里检查一下。"},
        {"fail-402", "DeepSeek 账户余额不足，请先充值。"},
        {"  ", "还没有填 DeepSeek API key，请在设置里填写。"},
    };
    for (const auto &[key, sentence] : failures) {
        device.useProvider(providerOf(practice), QString::fromLatin1(key));
        const Ended ended = device({u"--add-spelling"_s, u"run|walk"_s});
        const QString line = u"「%1」出错：%2"_s;
        EXPECT_EQ(ended.code, 0);
        EXPECT_THAT(ended.lines(),
            ElementsAre(line.arg(u"run"_s, QString::fromUtf8(sentence)),
                line.arg(u"walk"_s, QString::fromUtf8(sentence))));
    }
    EXPECT_FALSE(QFile::exists(device.path(u"words.json"_s)));
}

TEST_F(CommandLine, TouchesNoRealSettingsInItsChecks)
{
    const QTemporaryDir home;
    const Ended refused = run(QStringLiteral(NIMBRELLE_PROGRAM), {u"--selftest-studystamp"_s},
        {u"HOME="_s + home.path(), u"NIMBRELLE_DATA_DIR="_s});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(refused.output.trimmed(), u"要先设置 NIMBRELLE_DATA_DIR 指向一个临时文件夹（不碰真实设置）"_s);
    EXPECT_TRUE(QDir(home.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));

    const Ended stamped = device({u"--selftest-studystamp"_s});
    EXPECT_EQ(stamped.lines().value(1), u"OK 复习设置会记下修改时间"_s);
    device({u"--selftest-config"_s});
    EXPECT_FALSE(readRecordFile<AppConfig>(device.path(u"config.json"_s))->studySettingsAt.isEmpty());
}

TEST_F(CommandLine, WritesTheGrowthArchiveByTheScriptThatTheSettingsInstall)
{
    const QTemporaryDir home;
    const AppPaths paths(home.filePath(u"data"_s));
    const GrowthGenerator generator(paths, QStringLiteral(NIMBRELLE_PROGRAM), SystemClock::shared());
    generator.install();
    const GrowthFolder folder(paths);
    const QStringList environment{u"NIMBRELLE_DATA_DIR="_s + paths.supportDir, u"TZ=Asia/Shanghai"_s};
    const auto generate = [&] {
        return run(QString::fromLatin1(GrowthFolder::interpreter), {folder.script()}, environment);
    };
    EXPECT_EQ(generate().code, 0);
    EXPECT_TRUE(readFile(folder.report()).value_or("").contains("还是一张白纸"));

    QDir().mkpath(paths.supportDir);
    WordEntry word;
    word.id = QUuid::createUuid();
    word.headword = u"reluctant"_s;
    word.sourceKeys = QStringList{u"R&D"_s};
    word.createdAt = SystemClock::shared().now();
    ASSERT_TRUE(replaceFile(paths.words, *encode(QList<WordEntry>{word}, TextForm::file)));
    const auto before = readFile(paths.words);
    const Ended ended = generate();
    EXPECT_EQ(ended.code, 0) << ended.errors.toStdString();
    EXPECT_TRUE(readFile(folder.report()).value_or("").contains("R&amp;D"));
    EXPECT_EQ(readFile(paths.words), before);

    ASSERT_TRUE(replaceFile(paths.words, "[{"));
    EXPECT_EQ(generate().code, 1) << "and the last report stays";
    EXPECT_TRUE(readFile(folder.report()).value_or("").contains("R&amp;D"));
}

TEST_F(CommandLine, SyncsTwoDevicesThroughAServer)
{
    const QTemporaryDir directory;
    const QString data = directory.filePath(u"server"_s);
    const QString program = QStringLiteral(NIMBRELLE_SERVER);
    const QStringList variables{u"HOME="_s + directory.path()};
    const Ended made = run(program,
        {u"init"_s, u"--data"_s, data, u"--url"_s, u"https://127.0.0.1:38443"_s, u"--port"_s, u"38443"_s,
            u"--bind"_s, u"127.0.0.1"_s},
        variables);
    ASSERT_EQ(made.code, 0) << made.errors.toStdString();
    const QString code = made.output.mid(made.output.indexOf(u"nimbrelle://sync?"_s)).section(u'\n', 0, 0);

    EXPECT_EQ(device({u"--sync-connect"_s, u"no code"_s}).output.trimmed(), u"同步码格式不对"_s);
    EXPECT_EQ(
        device({u"--sync-connect"_s, code}).output.trimmed(), u"连不上同步服务器（没网，或者服务器停了）"_s);
    const RunningServer server(program, {u"serve"_s, u"--data"_s, data});
    const Ended connected = device({u"--sync-connect"_s, u"同步码："_s + code + u" 请粘贴"_s});
    EXPECT_EQ(connected.output.trimmed(), u"已连接 127.0.0.1"_s);
    EXPECT_EQ(connected.code, 0);

    const RunningServer practice(QStringLiteral(NIMBRELLE_PRACTICE), {});
    AppConfig config = *readRecordFile<AppConfig>(device.path(u"config.json"_s));
    config.baseURL = providerOf(practice);
    config.apiKey = u"practice"_s;
    writeRecordFile(device.path(u"config.json"_s), config, FileMode::ownerOnly);
    device({u"--add-spelling"_s, u"reluctant|run"_s});
    EXPECT_EQ(device({u"--sync-now"_s}).output.trimmed(), u"同步好了：2 个词"_s);
    EXPECT_EQ(QDir(device.path(u"backups"_s)).entryList({u"*-sync-2.zip"_s}).size(), 1);

    const Device other;
    EXPECT_EQ(other({u"--sync-connect"_s, code}).code, 0);
    EXPECT_EQ(other({u"--sync-now"_s}).output.trimmed(), u"同步好了：2 个词"_s);
    EXPECT_EQ(readRecordFile<QList<WordEntry>>(other.path(u"words.json"_s)), words());
    EXPECT_EQ(readFile(other.path(u"learning-log.jsonl"_s)), readFile(device.path(u"learning-log.jsonl"_s)));
}

TEST_F(CommandLine, TakesTheDataAlongAndBringsItBack)
{
    const RunningServer practice(QStringLiteral(NIMBRELLE_PRACTICE), {u"--delay-ms"_s, u"0"_s});
    device.useProvider(providerOf(practice), u"practice"_s);
    const QTemporaryDir outside;
    const auto file = [&outside](const char *name) { return outside.filePath(QString::fromLatin1(name)); };
    ASSERT_TRUE(replaceFile(file("list.txt"), "reluctant\n放弃\nreluctant\n"));
    const Ended imported = device({u"--import-words"_s, file("list.txt")});
    EXPECT_EQ(imported.code, 0);
    EXPECT_EQ(imported.lines().first(), u"2 个词等着查"_s);
    EXPECT_EQ(imported.lines().last(), u"查完了：存了 2 个词"_s);
    EXPECT_THAT(headwords(), ElementsAre(u"give up"_s, u"reluctant"_s));

    for (const char *kind : {"csv", "anki", "anki-cloze", "backup"}) {
        const Ended ended = device({u"--export-"_s + QString::fromLatin1(kind), file(kind)});
        EXPECT_EQ(ended.code, 0) << kind << ended.output.toStdString();
        EXPECT_TRUE(QFileInfo::exists(file(kind))) << kind;
    }
    EXPECT_EQ(device({u"--export-csv"_s, device.path(u"words.json"_s)}).code, 1);
    EXPECT_EQ(headwords().size(), 2);

    const Device other;
    EXPECT_EQ(other({u"--check-backup"_s, file("backup")}).lines().value(1), u"新增 2 个词"_s);
    EXPECT_FALSE(QFile::exists(other.path(u"words.json"_s)));
    EXPECT_EQ(other({u"--import-backup"_s, file("backup")}).lines().last(),
        u"已导入备份：新增 2 个词，补全 0 个"_s);
    const auto broughtBack = readRecordFile<QList<WordEntry>>(other.path(u"words.json"_s)).value();
    EXPECT_TRUE(std::ranges::is_permutation(broughtBack, words()));
    const Ended refused = other({u"--import-backup"_s, file("csv")});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(refused.lines(), QStringList{u"这个文件不是 zip 压缩文件"_s});
}

TEST_F(CommandLine, AListOfWordsWaitsForARightKey)
{
    const RunningServer practice(QStringLiteral(NIMBRELLE_PRACTICE), {u"--delay-ms"_s, u"0"_s});
    device.useProvider(providerOf(practice), u"wrong"_s);
    const QTemporaryDir outside;
    const QString list = outside.filePath(u"list.csv"_s);
    ASSERT_TRUE(replaceFile(list, "释义,word\n跑,run\n走,walk\n"));
    const Ended stopped = device({u"--import-words"_s, list});
    EXPECT_EQ(stopped.code, 1);
    EXPECT_EQ(stopped.lines().last(), u"API key 不正确，请在设置里检查一下。还有 2 个词没查"_s);
    device.useProvider(providerOf(practice), u"practice"_s);
    EXPECT_EQ(device({u"--import-words"_s, list}).code, 0);
    EXPECT_EQ(headwords().size(), 2);
}

TEST_F(CommandLine, RunsTheFirstOptionOfTheTableAlone)
{
    const Ended ended = device({u"--sync-now"_s, u"--selftest-merge"_s});
    EXPECT_EQ(ended.lines().last(), u"OK 合并规则正常"_s);
    const Ended plain = device({u"--add-spelling"_s});
    // A value option without a value counts as absent: the program itself starts, and misses a desktop.
    EXPECT_EQ(plain.code, 1);
    EXPECT_EQ(plain.output, QString());
    EXPECT_TRUE(plain.errors.contains(u"没有可用的图形会话"_s)) << plain.errors.toStdString();
}

} // namespace
