#include "Programs.h"
#include "frame/AppConfig.h"
#include "frame/RecordFile.h"
#include "notebook/LearningLog.h"
#include "notebook/WordEntry.h"
#include "support/Printers.h"

#include <QDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
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
        return readRecordFile<QList<WordEntry>>(device.path(QStringLiteral("words.json")))
            .value_or(QList<WordEntry>());
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
    const Ended ended = device({QStringLiteral("--selftest-fsrs")}, {QStringLiteral("LC_ALL=de_DE.UTF-8")});
    EXPECT_EQ(ended.lines().value(3),
        QStringLiteral("总是费劲：hard→1.2天(S=1.2,D=6.5,L1) hard→1.8天(S=1.8,D=7.0,L1) "
                       "hard→2.6天(S=2.6,D=7.5,L1) hard→3.5天(S=3.5,D=7.9,L1)"));
}

TEST_F(CommandLine, DrawsItsIconsWithoutADisplay)
{
    const QString folder = device.path(QStringLiteral("icons"));
    const Ended drawn = device({QStringLiteral("--render-icon"), folder});
    EXPECT_EQ(drawn.code, 0);
    EXPECT_EQ(drawn.output + drawn.errors, QString());
    EXPECT_EQ(QDir(folder).entryList({QStringLiteral("*.png")}).size(), 11);

    const QString blocked = folder + QStringLiteral("/menubar-preview.png");
    const Ended failed = device({QStringLiteral("--render-icon"), blocked});
    EXPECT_EQ(failed.code, 1);
    EXPECT_EQ(failed.errors, QString());
    EXPECT_TRUE(failed.output.startsWith(QStringLiteral("生成图标失败：") + blocked));
}

TEST_F(CommandLine, AddsWordsThroughTheProvider)
{
    const RunningServer practice(
        QStringLiteral(NIMBRELLE_PRACTICE), {QStringLiteral("--delay-ms"), QStringLiteral("0")});
    device.useProvider(providerOf(practice), QStringLiteral("practice"));
    const QStringList arguments{
        QStringLiteral("--add-spelling"), QStringLiteral("reluctant | Hotel Califonil | 放弃 ||")};
    const Ended first = device(arguments);
    EXPECT_EQ(first.code, 0);
    EXPECT_EQ(first.lines().size(), 3) << first.output.toStdString();
    EXPECT_TRUE(first.lines().value(1).startsWith(
        QStringLiteral("已加入常拼：Hotel Califonil → Hotel California（")));
    EXPECT_THAT(headwords(),
        ElementsAre(
            QStringLiteral("give up"), QStringLiteral("Hotel California"), QStringLiteral("reluctant")));
    const WordEntry giveUp = words().value(0);
    EXPECT_EQ(giveUp.spellPractice, true);
    EXPECT_EQ(giveUp.sourceKeys, QStringList{QStringLiteral("常拼")});
    EXPECT_EQ(giveUp.inflections->value(QStringLiteral("past")), QStringLiteral("gave up"));
    EXPECT_EQ(giveUp.forms->size(), 1);
    EXPECT_EQ(giveUp.encounterDays->size(), 1);

    EXPECT_EQ(device(arguments).code, 0);
    EXPECT_EQ(words().size(), 3) << "a word already saved is not saved again";
    const auto log = readFile(device.path(QStringLiteral("learning-log.jsonl")));
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
        const Ended ended = device({QStringLiteral("--add-spelling"), QStringLiteral("run|walk")});
        const QString line = QStringLiteral("「%1」出错：%2");
        EXPECT_EQ(ended.code, 0);
        EXPECT_THAT(ended.lines(),
            ElementsAre(line.arg(QStringLiteral("run"), QString::fromUtf8(sentence)),
                line.arg(QStringLiteral("walk"), QString::fromUtf8(sentence))));
    }
    EXPECT_FALSE(QFile::exists(device.path(QStringLiteral("words.json"))));
}

TEST_F(CommandLine, TouchesNoRealSettingsInItsChecks)
{
    const QTemporaryDir home;
    const Ended refused = run(QStringLiteral(NIMBRELLE_PROGRAM), {QStringLiteral("--selftest-studystamp")},
        {QStringLiteral("HOME=") + home.path(), QStringLiteral("NIMBRELLE_DATA_DIR=")});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(refused.output.trimmed(),
        QStringLiteral("要先设置 NIMBRELLE_DATA_DIR 指向一个临时文件夹（不碰真实设置）"));
    EXPECT_TRUE(QDir(home.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));

    const Ended stamped = device({QStringLiteral("--selftest-studystamp")});
    EXPECT_EQ(stamped.lines().value(1), QStringLiteral("OK 复习设置会记下修改时间"));
    device({QStringLiteral("--selftest-config")});
    EXPECT_FALSE(
        readRecordFile<AppConfig>(device.path(QStringLiteral("config.json")))->studySettingsAt.isEmpty());
}

TEST_F(CommandLine, SyncsTwoDevicesThroughAServer)
{
    const QTemporaryDir directory;
    const QString data = directory.filePath(QStringLiteral("server"));
    const QString program = QStringLiteral(NIMBRELLE_SERVER);
    const QStringList variables{QStringLiteral("HOME=") + directory.path()};
    const Ended made = run(program,
        {QStringLiteral("init"), QStringLiteral("--data"), data, QStringLiteral("--url"),
            QStringLiteral("https://127.0.0.1:38443"), QStringLiteral("--port"), QStringLiteral("38443"),
            QStringLiteral("--bind"), QStringLiteral("127.0.0.1")},
        variables);
    ASSERT_EQ(made.code, 0) << made.errors.toStdString();
    const QString code =
        made.output.mid(made.output.indexOf(QStringLiteral("nimbrelle://sync?"))).section(u'\n', 0, 0);

    EXPECT_EQ(device({QStringLiteral("--sync-connect"), QStringLiteral("no code")}).output.trimmed(),
        QStringLiteral("同步码格式不对"));
    EXPECT_EQ(device({QStringLiteral("--sync-connect"), code}).output.trimmed(),
        QStringLiteral("连不上同步服务器（没网，或者服务器停了）"));
    const RunningServer server(program, {QStringLiteral("serve"), QStringLiteral("--data"), data});
    const Ended connected = device(
        {QStringLiteral("--sync-connect"), QStringLiteral("同步码：") + code + QStringLiteral(" 请粘贴")});
    EXPECT_EQ(connected.output.trimmed(), QStringLiteral("已连接 127.0.0.1"));
    EXPECT_EQ(connected.code, 0);

    const RunningServer practice(QStringLiteral(NIMBRELLE_PRACTICE), {});
    AppConfig config = *readRecordFile<AppConfig>(device.path(QStringLiteral("config.json")));
    config.baseURL = providerOf(practice);
    config.apiKey = QStringLiteral("practice");
    writeRecordFile(device.path(QStringLiteral("config.json")), config, FileMode::ownerOnly);
    device({QStringLiteral("--add-spelling"), QStringLiteral("reluctant|run")});
    EXPECT_EQ(device({QStringLiteral("--sync-now")}).output.trimmed(), QStringLiteral("同步好了：2 个词"));

    const Device other;
    EXPECT_EQ(other({QStringLiteral("--sync-connect"), code}).code, 0);
    EXPECT_EQ(other({QStringLiteral("--sync-now")}).output.trimmed(), QStringLiteral("同步好了：2 个词"));
    EXPECT_EQ(readRecordFile<QList<WordEntry>>(other.path(QStringLiteral("words.json"))), words());
    EXPECT_EQ(readFile(other.path(QStringLiteral("learning-log.jsonl"))),
        readFile(device.path(QStringLiteral("learning-log.jsonl"))));
}

TEST_F(CommandLine, RunsTheFirstOptionOfTheTableAlone)
{
    const Ended ended = device({QStringLiteral("--sync-now"), QStringLiteral("--selftest-merge")});
    EXPECT_EQ(ended.lines().last(), QStringLiteral("OK 合并规则正常"));
    const Ended plain = device({QStringLiteral("--add-spelling")});
    // A value option without a value counts as absent: the program itself starts, and misses a desktop.
    EXPECT_EQ(plain.code, 1);
    EXPECT_EQ(plain.output, QString());
    EXPECT_TRUE(plain.errors.contains(QStringLiteral("没有可用的图形会话"))) << plain.errors.toStdString();
}

} // namespace
