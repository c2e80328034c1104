#include "XScene.h"
#include "coach/CoachHistory.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/RecordFile.h"
#include "platform/linux/desktop/StatusHost.h"

#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::AllOf;
using testing::Contains;

namespace {

const QString settingsTitle = u"Nimbrelle 设置"_s;

/// The program used through its windows. They are reached through the settings, for there is no bar.
class Windows : public XScene {
protected:
    QList<AccessiblePart> shown() const override { return accessible.shownBy(used->id()); }

    /// As who opens the program in the applications' menu while it runs.
    void openSettings() { openSettings(folder.path()); }
    void openSettings(const QString &dataFolder)
    {
        Running again;
        again.start(QStringLiteral(NIMBRELLE_PROGRAM), {}, {{u"NIMBRELLE_DATA_DIR"_s, dataFolder}});
        EXPECT_EQ(again.exitCode(), 0);
        // It may have stood there before, under another window.
        ASSERT_TRUE(QTest::qWaitFor([&] { return find(settingsTitle).value_or(AccessiblePart()).isActive; }));
        ASSERT_TRUE(appears(u"API key"_s));
    }

    /// Turns the wheel until a part of the settings stands inside them, then clicks on it.
    void pressInSettings(const QString &name)
    {
        constexpr int notch = 80; // pixels at most
        const auto field = find(settingsTitle);
        ASSERT_TRUE(field && find(name)) << name.toStdString();
        const QRect window = field->area;
        user.moveTo({window.right() - 6, window.center().y()}); // no control is there
        for (int i = 0; i < 30; ++i) {
            const QRect area = restingArea(name);
            if (window.contains(area))
                return click(area.center());
            const int distance = area.center().y() - window.center().y();
            for (int turned = 0; turned <= std::abs(distance) - notch; turned += notch) {
                user.button(distance > 0 ? 5 : 4, true);
                user.button(distance > 0 ? 5 : 4, false);
            }
        }
        FAIL() << name.toStdString();
    }

    void addWord(const QString &word)
    {
        pressInSettings(u"查词"_s);
        ASSERT_TRUE(appears(u"加一个例句"_s));
        ASSERT_TRUE(isReady(u"查词"_s));
        type(word);
        user.tap(keysym::enter);
        ASSERT_TRUE(appears(u"加入常拼"_s));
        shoot(u"looked-up"_s);
        tapWithControl('s');
        ASSERT_TRUE(says(u"已保存 "_s + word));
    }

    /// Whether a field of this name takes what is typed.
    bool isReady(const QString &name) const
    {
        return QTest::qWaitFor([&] {
            const auto parts = shown();
            return std::ranges::any_of(
                parts, [&](const AccessiblePart &part) { return part.name == name && part.isFocused; });
        });
    }

    static void startIn(Running &program, const QTemporaryDir &folder)
    {
        program.start(QStringLiteral(NIMBRELLE_PROGRAM), {}, {{u"NIMBRELLE_DATA_DIR"_s, folder.path()}});
    }

    QString coachWroteFirst() const
    {
        const QList<CoachDay> days = CoachHistory(AppPaths(folder.path()), SystemClock::shared()).days();
        return days.isEmpty() || days.last().messages.isEmpty() ? QString()
                                                                : days.last().messages.first().text;
    }

    const Running *used = &program;
};

TEST_F(Windows, TheFirstStartLandsInTheSettingsAndTriesTheKey)
{
    AppConfig fresh = practiceConfig();
    fresh.apiKey.clear();
    writeConfig(fresh);
    startProgram();
    ASSERT_TRUE(appears(u"API key"_s));
    shoot(u"settings"_s);
    EXPECT_TRUE(find(u"AI 教练"_s)) << "no bar shows the program, so its windows are offered here";
    press(u"API key"_s);
    ASSERT_TRUE(isReady(u"API key"_s));
    type(u"practice"_s);
    press(u"测试"_s);
    EXPECT_TRUE(says(u"成功：reluctant = "_s));
    EXPECT_TRUE(isReady(u"测试"_s)) << "the keyboard is still where the user was";
    const auto kept = readRecordFile<AppConfig>(folder.filePath(u"config.json"_s));
    EXPECT_EQ(kept.value_or(AppConfig()).apiKey, u"practice"_s);
}

TEST_F(Windows, AWordIsAddedReviewedToTheEndAndFound)
{
    startProgram();
    openSettings();
    addWord(u"reluctant"_s);
    ASSERT_EQ(notebook().size(), 1);

    openSettings();
    press(u"开始复习（1 题）"_s);
    ASSERT_TRUE(appears(u"看答案"_s));
    shoot(u"asked"_s);
    user.tap(keysym::space);
    ASSERT_TRUE(appears(u"想起来了"_s));
    shoot(u"answer"_s);
    user.tap('3');
    ASSERT_TRUE(isReady(u"拼写"_s));
    shoot(u"spelling"_s);
    type(u"reluctan"_s);
    user.tap(keysym::tab);
    ASSERT_TRUE(QTest::qWaitFor([&] { return textOf(u"拼写"_s) == u"reluctant"_s; }));
    user.tap(keysym::enter);
    ASSERT_TRUE(appears(u"按回车继续"_s));
    shoot(u"spelled"_s);
    user.tap(keysym::enter);
    ASSERT_TRUE(says(u"这一轮做完了"_s));
    shoot(u"finished"_s);
    const WordEntry learned = notebook().value(0);
    EXPECT_EQ(learned.review.value_or(ReviewState()).reps, 1);
    EXPECT_TRUE(learned.lastSpelledAt);

    openSettings();
    press(u"生词本（1 个）"_s);
    ASSERT_TRUE(appears(u"搜索"_s));
    press(u"搜索"_s);
    ASSERT_TRUE(isReady(u"搜索"_s));
    type(u"reluc"_s);
    user.tap(keysym::down);
    user.tap(keysym::down);
    ASSERT_TRUE(appears(u"意思"_s));
    EXPECT_EQ(textOf(u"单词"_s), u"reluctant"_s);
    EXPECT_EQ(textOf(u"意思"_s), learned.meaningZh);
    shoot(u"found"_s);
}

TEST_F(Windows, TheCoachsWordsGrowAndASignalKeepsThem)
{
    const RunningServer slow(QStringLiteral(NIMBRELLE_PRACTICE), {u"--delay-ms"_s, u"150"_s});
    writeConfig(practiceConfig(slow));
    startProgram();
    openSettings();
    press(u"AI 教练"_s);
    const auto said = [&] { return textOf(u"AI 的回答"_s); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return said().size() > 5; }));
    const QString early = said();
    ASSERT_TRUE(QTest::qWaitFor([&] { return said().size() > early.size(); }));
    EXPECT_THAT(said().toStdString(), testing::StartsWith(early.toStdString()));
    EXPECT_TRUE(find(u"停止"_s));
    shoot(u"growing"_s);
    const QString late = said();
    program.signal(SIGTERM);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_THAT(coachWroteFirst().toStdString(), testing::StartsWith(late.toStdString()));

    startProgram();
    openSettings();
    press(u"AI 教练"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return said() == coachWroteFirst(); })) << said().toStdString();
}

TEST_F(Windows, AQuestionFromTheCardIsAnsweredInItsWindow)
{
    startProgram();
    openEditor(u"I was reluctant to post this, but here we go.\n"_s);
    doubleClick(inEditor(u"reluctant"_s).center());
    press(u"更多"_s);
    press(u"为什么这么用？"_s);
    ASSERT_TRUE(appears(u"AI 的回答"_s));
    EXPECT_EQ(textOf(u"我说的话"_s), u"为什么这么用？"_s);
    EXPECT_EQ(textOf(u"原文"_s), u"I was reluctant to post this, but here we go."_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(u"AI 的回答"_s).contains(u"reluctant"_s); }));
    EXPECT_TRUE(appears(u"发送（回车）"_s)) << "it came to its end";
    ASSERT_TRUE(isReady(u"自己的问题"_s));
    type(u"why"_s);
    user.tap(keysym::enter);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const auto parts = shown();
        return std::ranges::count(parts, u"AI 的回答"_s, &AccessiblePart::name) == 2;
    }));
}

TEST_F(Windows, TwoNotebooksMeetThroughThePastedCode)
{
    const SyncServer server;
    const QTemporaryDir otherFolder;
    writeRecordFile(otherFolder.filePath(u"config.json"_s), practiceConfig(), FileMode::ownerOnly);
    const auto wordsOf = [](const QTemporaryDir &device) {
        QStringList words;
        const auto entries = readRecordFile<QList<WordEntry>>(device.filePath(u"words.json"_s));
        for (const WordEntry &entry : entries.value_or(QList<WordEntry>()))
            words.append(entry.headword);
        return words;
    };
    const auto connectWithCode = [&](const QTemporaryDir &device) {
        pressInSettings(u"同步码"_s);
        ASSERT_TRUE(isReady(u"同步码"_s));
        tapWithControl('v');
        user.tap(keysym::enter);
        ASSERT_TRUE(QTest::qWaitFor([&] {
            const auto config = readRecordFile<AppConfig>(device.filePath(u"config.json"_s));
            return config && !config->syncToken.isEmpty();
        }));
        ASSERT_TRUE(appears(u"现在同步"_s));
        EXPECT_TRUE(isReady(u"复制同步码"_s)) << "the keyboard is still where the user was";
    };

    startProgram();
    openSettings();
    addWord(u"reluctant"_s);
    openSettings();
    user.clipboard.restore({{{u"UTF8_STRING"_s, server.code().toUtf8()}}});
    connectWithCode(folder);
    shoot(u"connected"_s);
    pressInSettings(u"复制同步码"_s);
    ASSERT_TRUE(appears(u"已复制"_s));

    Running other;
    startIn(other, otherFolder);
    used = &other;
    ASSERT_TRUE(QTest::qWaitFor([&] { return accessible.isListening(other.id()); }));
    openSettings(otherFolder.path());
    connectWithCode(otherFolder);
    EXPECT_TRUE(QTest::qWaitFor([&] { return wordsOf(otherFolder) == QStringList{u"reluctant"_s}; }));
    openSettings(otherFolder.path());
    addWord(u"deprecate"_s);
    // Goes up by itself some seconds later, unless told to.
    openSettings(otherFolder.path());
    pressInSettings(u"现在同步"_s);
    ASSERT_TRUE(appears(u"现在同步"_s));

    used = &program;
    openSettings();
    pressInSettings(u"现在同步"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return wordsOf(folder).contains(u"deprecate"_s); }));
    ASSERT_TRUE(says(u"已保存 2 个词"_s));
    ASSERT_TRUE(appears(u"现在同步"_s)); // the page moves no more
    press(u"打开生词本"_s);
    EXPECT_TRUE(says(u"deprecate"_s));
}

// From where there is no desktop at all, as in a job at night. The program holds the same notebook in memory.
TEST_F(Windows, CommandsBesideTheProgramAreDoneInIt)
{
    const SyncServer server;
    const auto command = [this](const QStringList &arguments) {
        const Ended ended = nimbrelle::run(
            QStringLiteral(NIMBRELLE_PROGRAM), arguments, {u"NIMBRELLE_DATA_DIR="_s + folder.path()});
        EXPECT_EQ(ended.code, 0) << ended.errors.toStdString();
        return ended.output.trimmed();
    };
    writeConfig(practiceConfig());
    startProgram();
    EXPECT_TRUE(
        command({u"--add-spelling"_s, u"reluctant"_s}).startsWith(u"已加入常拼：reluctant → reluctant（"_s));
    EXPECT_EQ(command({u"--sync-connect"_s, server.code()}), u"已连接 127.0.0.1"_s);
    openSettings();
    EXPECT_TRUE(says(u"已保存 1 个词"_s));
    addWord(u"deploy"_s);
    EXPECT_EQ(command({u"--sync-now"_s}), u"同步好了：2 个词"_s);
    EXPECT_EQ(notebook().size(), 2);
}

TEST_F(Windows, ABarShowsTheWordAndItsMenuWorks)
{
    StatusHost host;
    ASSERT_TRUE(host.come());
    WordEntry word;
    word.id = QUuid::createUuid();
    word.headword = u"reluctant"_s;
    word.meaningZh = u"不情愿的"_s;
    word.stage = Stage::learning;
    writeRecordFile(folder.filePath(u"words.json"_s), QList{word});
    startProgram();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !host.item().isEmpty(); }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return host.property(u"XAyatanaLabel"_s) == u"reluctant"_s; }));
    host.aboutToShow();
    const QStringList menu = host.readMenu();
    EXPECT_THAT(menu, AllOf(Contains(u"　在学 1/30"_s), Contains(u"生词本（1 个）"_s)));
    host.click(u"生词本（1 个）"_s);
    EXPECT_TRUE(appears(u"搜索"_s));
    host.click(u"设置…"_s);
    ASSERT_TRUE(appears(u"API key"_s));
    EXPECT_FALSE(find(u"AI 教练"_s)) << "the bar has it";
    shoot(u"windows"_s);
    host.click(u"退出 Nimbrelle"_s);
    EXPECT_EQ(program.exitCode(), 0);
}

} // namespace
