#include "shell/AppDelegate.h"

#include "card/AskSession.h"
#include "coach/CoachSession.h"
#include "review/ReviewSession.h"
#include "settings/PermissionModel.h"
#include "shell/GrowthGenerator.h"
#include "support/Await.h"
#include "support/FakeAIClient.h"
#include "support/FakeDesktop.h"
#include "support/FakeShell.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Shell : public testing::Test, protected Notebook {
protected:
    Shell()
    {
        configure([](AppConfig &changed) { changed.apiKey = u"sk-test"_s; });
    }

    void learn(const char *headword) { store.startLearning(save(headword)); }
    void grant(bool granted) { permissions.states[Grant::accessibility].granted = granted; }
    void launch() { delegate.applicationDidFinishLaunching(); }
    QStringList glances() const { return events().filter(u"glance"_s); }

    FakePermissions permissions;
    FakeLaunchAtLogin launchAtLogin;
    PermissionModel permissionModel{permissions, launchAtLogin, {}};
    FakeFrontApplication front;
    FakeSpeaker speaker;
    FakeStatusItem item;
    FakeAppWindows windows;
    FakeAI ai;
    ReviewSession review{store, clock, speaker};
    AskSession ask{clock, config, store, ai.factory()};
    CoachHistory history{paths, clock};
    std::unique_ptr<CoachSession> coach;
    QStringList started;
    DataWriter writer;
    AppPaths programPaths{directory.filePath(u"data"_s)}; // so that what stands beside it is ours too
    AppDelegate delegate{{
        .clock = clock,
        .paths = programPaths,
        .config = config,
        .words = store,
        .log = log,
        .writer = writer,
        .permissions = permissions,
        .permissionModel = permissionModel,
        .front = front,
        .speaker = speaker,
        .statusItem = item,
        .windows = windows,
        .review = review,
        .ask = ask,
        .coach = [this]() -> CoachSession & {
            coach = std::make_unique<CoachSession>(
                history, clock, config, [](Timestamp) { return QString(); }, ai.factory());
            return *coach;
        },
        .startSync = [this] { started.append(u"sync"_s); },
        .startTrigger = [this] { started.append(u"trigger"_s); },
        .quitApplication = [this] { started.append(u"quit"_s); },
    }};
};

TEST_F(Shell, TheMenuBeginsWithWhatCannotBeWrittenWhileThatIsSo)
{
    launch();
    writer.report(paths.words, {.error = ENOSPC});
    const QString line = u"写不进生词本（%1）：磁盘满了"_s.arg(paths.words);
    EXPECT_EQ(item.openMenu().first(), line);
    EXPECT_EQ(StatusMenu::actionOf(item.shown.first()), StatusMenu::Action::showSettings);
    writer.report(paths.words, {});
    EXPECT_FALSE(item.openMenu().contains(line));
}

TEST_F(Shell, StartsItsPartsAndOpensNothingForASettledUser)
{
    learn("reluctant");
    EXPECT_EQ(AppDelegate::shared(), nullptr);
    launch();
    EXPECT_EQ(AppDelegate::shared(), &delegate);
    EXPECT_THAT(started, ElementsAre(u"sync"_s, u"trigger"_s));
    EXPECT_THAT(windows.calls, IsEmpty());
    EXPECT_EQ(item.title, u"reluctant"_s);
    delegate.applicationShouldHandleReopen();
    EXPECT_THAT(windows.calls, ElementsAre(u"settings"_s));
}

TEST_F(Shell, LandsANewUserInTheSettings)
{
    configure([](AppConfig &changed) { changed.apiKey.clear(); });
    launch();
    EXPECT_THAT(windows.calls, ElementsAre(u"settings"_s));
    EXPECT_THAT(started, Contains(u"trigger"_s));
}

TEST_F(Shell, WaitsForTheGrantAndThenStartsOnce)
{
    grant(false);
    launch();
    EXPECT_THAT(windows.calls, ElementsAre(u"settings"_s));
    EXPECT_THAT(item.openMenu(), Contains(u"还没有打开辅助功能权限"_s));
    clock.advance(10min);
    EXPECT_THAT(started, ElementsAre(u"sync"_s));
    grant(true);
    clock.advance(1500ms);
    EXPECT_THAT(started, ElementsAre(u"sync"_s, u"trigger"_s));
    clock.advance(10min);
    EXPECT_THAT(started, ElementsAre(u"sync"_s, u"trigger"_s));
}

TEST_F(Shell, CountsAWordInTheMenuAsSeenOnceForEachShowing)
{
    learn("reluctant");
    launch();
    item.source(StatusItem::MenuUse::listing);
    EXPECT_THAT(glances(), IsEmpty()) << "reading the menu is not looking at it";
    item.openMenu();
    item.openMenu();
    EXPECT_THAT(glances(), ElementsAre(u"glance reluctant"_s));
    EXPECT_TRUE(item.click(u"换一个"_s));
    item.openMenu();
    EXPECT_EQ(glances().size(), 2);
}

TEST_F(Shell, SpeaksTheWordAndClearsItWithItsSetting)
{
    learn("reluctant");
    launch();
    EXPECT_TRUE(item.click(u"reluctant  意思"_s));
    EXPECT_THAT(speaker.said, ElementsAre(u"reluctant"_s));
    EXPECT_TRUE(item.click(u"菜单栏显示在学的词"_s));
    EXPECT_EQ(item.title, QString());
    EXPECT_EQ(item.toolTip, u"Nimbrelle"_s);
    EXPECT_FALSE(item.click(u"换一个"_s));
    EXPECT_TRUE(item.click(u"菜单栏显示在学的词"_s));
    EXPECT_EQ(item.title, u"reluctant"_s);
}

TEST_F(Shell, EachLineDoesWhatItSays)
{
    learn("reluctant");
    store.setSpellPractice(word("reluctant").id, true);
    launch();
    const std::pair<const char *, const char *> lines[]{{"在学", "words"}, {"生词本", "words"},
        {"查词", "add word"}, {"设置", "settings"}, {"AI 教练", "coach"},
        {"拼写练习（1 个常拼）", "spelling"}, {"开始复习（1 题）", "review"}};
    for (const auto &[line, window] : lines) {
        EXPECT_TRUE(item.click(QString::fromUtf8(line))) << line;
        EXPECT_THAT(windows.take(), ElementsAre(QString::fromLatin1(window))) << line;
    }
    EXPECT_TRUE(item.click(u"退出"_s));
    EXPECT_EQ(started.last(), u"quit"_s);
}

TEST_F(Shell, TheNumbersOfTheMenuAreThoseOfTheRoundToCome)
{
    save("reluctant");
    launch();
    EXPECT_THAT(item.openMenu(), testing::IsSupersetOf({u"开始复习（1 题）"_s, u"在学 1/30"_s}));
    EXPECT_EQ(store.learningCount(), 0) << "nothing is changed by looking";
}

TEST_F(Shell, BeginsWhatAWindowShows)
{
    launch();
    EXPECT_TRUE(item.click(u"现在没有要复习的"_s));
    EXPECT_THAT(windows.take(), ElementsAre(u"review"_s));
    EXPECT_EQ(review.phase(), ReviewSession::Phase(ReviewSession::Empty{}));
    delegate.showSpelling();
    EXPECT_TRUE(review.isSpellingPractice());
    delegate.showReview();
    EXPECT_FALSE(review.isSpellingPractice());
    EXPECT_EQ(coach, nullptr);
    delegate.showCoach();
    EXPECT_TRUE(coach->isAnswering()) << "the day's first opening brings the briefing";
    delegate.showAsk(QuickQuestion::why, {.original = u"I was reluctant."_s});
    EXPECT_EQ(ask.context().original, u"I was reluctant."_s);
    EXPECT_TRUE(ask.isAnswering());
    EXPECT_EQ(windows.calls.last(), u"ask"_s);
}

TEST_F(Shell, FlipsTheSettingsOfItsCheckLines)
{
    launch();
    const std::pair<const char *, bool AppConfig::*> lines[]{{"划选英文", &AppConfig::autoPopupOnSelect},
        {"鼠标停在", &AppConfig::dwellLookup}, {"⌥ Option", &AppConfig::optionHoverOCR},
        {"连按两下", &AppConfig::optionRegionTranslate}};
    for (const auto &[line, setting] : lines) {
        EXPECT_TRUE(item.click(QString::fromUtf8(line)));
        EXPECT_FALSE(config.config().*setting) << line;
        EXPECT_TRUE(item.click(QString::fromUtf8(line)));
        EXPECT_TRUE(config.config().*setting) << line;
    }
    EXPECT_TRUE(item.click(u"开机自动启动"_s));
    EXPECT_TRUE(launchAtLogin.enabled);
    EXPECT_TRUE(item.click(u"开机自动启动"_s));
    EXPECT_FALSE(launchAtLogin.enabled);
}

TEST_F(Shell, ExcludesTheProgramThatWasInFrontWhenTheMenuOpened)
{
    launch();
    front.front = Application{.bundleID = u"firefox"_s, .name = u"Firefox"_s};
    item.openMenu();
    const MenuEntry line = *std::ranges::find(item.shown, u"在「Firefox」中停用"_s, &MenuEntry::title);
    front.front = Application{.bundleID = u"panel"_s};
    emit item.chosen(line);
    EXPECT_THAT(config.config().excludedBundleIDs, Contains(u"firefox"_s));
    EXPECT_TRUE(config.config().excludes(u"Firefox"_s)) << "as another kind of session calls it";
    emit item.chosen(line);
    EXPECT_EQ(config.config().excludedBundleIDs, AppConfig::defaultExcludedBundleIDs());
}

/// With the growth archive's folder beside that of the data files.
class Archive : public Shell {
protected:
    Archive()
    {
        QDir().mkpath(QFileInfo(archive.script()).path());
        setMode(folder(), 0755);
        setMode(programs(), 0755);
    }

    QString folder() const { return QFileInfo(archive.report()).path(); }
    QString programs() const { return QFileInfo(archive.script()).path(); }

    static void setMode(const QString &path, mode_t mode)
    {
        ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0);
    }

    void write(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(text);
        setMode(path, 0644);
    }

    /// Shows the archive and waits for what comes of it.
    QStringList shown()
    {
        delegate.showJourney();
        EXPECT_TRUE(waitUntil([&] { return !windows.calls.isEmpty(); }));
        return windows.take();
    }

    GrowthArchive archive{programPaths};
};

TEST_F(Archive, RunsTheGeneratorAndOpensItsReport)
{
    launch();
    EXPECT_FALSE(item.click(u"成长档案"_s)) << "there is no generator";
    write(archive.script(),
        "import pathlib, sys\n"
        "assert len(sys.argv) == 1\n"
        "pathlib.Path(sys.argv[0]).parents[1].joinpath('成长档案.html').write_text('x' * 7)\n");
    EXPECT_TRUE(item.click(u"成长档案"_s));
    EXPECT_THAT(windows.calls, IsEmpty()) << "nobody waits for the generator";
    EXPECT_THAT(item.openMenu(), Contains(u"成长档案（正在生成…）"_s));
    delegate.showJourney();
    EXPECT_TRUE(waitUntil([&] { return !windows.calls.isEmpty(); }));
    EXPECT_THAT(windows.take(), ElementsAre(archive.report())) << "two clicks open it once";
    EXPECT_THAT(item.openMenu(), Contains(u"成长档案"_s));
    EXPECT_EQ(QFile(archive.report()).size(), 7);
}

TEST_F(Archive, IsWrittenByTheProgramOnceTheSettingsHaveInstalledIt)
{
    const QString program = directory.filePath(u"nimbrelle"_s);
    write(program, "#!/bin/sh\nprintf '%s' \"$1\" >\"$2\"\n");
    setMode(program, 0755);
    const GrowthGenerator generator(programPaths, program, clock);
    launch();
    generator.toggle();
    EXPECT_TRUE(item.click(u"成长档案"_s));
    EXPECT_TRUE(waitUntil([&] { return !windows.calls.isEmpty(); }));
    EXPECT_THAT(windows.take(), ElementsAre(archive.report()));
    EXPECT_EQ(readFile(archive.report()), "--growth-archive");
    generator.toggle();
    EXPECT_FALSE(item.click(u"成长档案"_s));
}

TEST_F(Archive, SaysThatItIsMissingAndOpensAnOldReportAfterAFailure)
{
    const QString missing = u"成长档案还没装好|重新运行一次 build.sh 就会装好。"_s;
    EXPECT_THAT(shown(), ElementsAre(missing));
    write(archive.script(), "raise SystemExit(3)\n");
    EXPECT_THAT(shown(), ElementsAre(missing));
    write(archive.report(), "old");
    EXPECT_THAT(shown(), ElementsAre(archive.report()));
}

TEST_F(Archive, RunsNothingThatSomebodyElseCouldHaveWritten)
{
    const QString ran = folder() + u"/ran"_s;
    write(archive.script(),
        "import pathlib, sys\npathlib.Path(sys.argv[0]).parents[1].joinpath('ran').touch()\n");
    const auto refuses = [&] { return !archive.isInstalled() && !shown().isEmpty() && !QFile::exists(ran); };
    const QString beside = QFileInfo(folder()).path();
    EXPECT_TRUE(archive.isInstalled());
    for (const QString &path : {beside, folder(), programs(), archive.script()}) {
        const mode_t mode = path == archive.script() ? 0644 : 0755;
        for (const mode_t writable : {mode_t{S_IWGRP}, mode_t{S_IWOTH}}) {
            setMode(path, mode | writable);
            EXPECT_TRUE(refuses()) << path.toStdString();
        }
        setMode(path, mode);
        if (path != beside && ::geteuid() == 0) { // who else can give files away?
            const QByteArray name = QFile::encodeName(path);
            ASSERT_EQ(::chown(name.constData(), 65534, 65534), 0);
            EXPECT_TRUE(refuses()) << path.toStdString();
            ASSERT_EQ(::chown(name.constData(), 0, 0), 0);
        }
    }
    setMode(beside, 01777); // as a folder for temporary files is
    EXPECT_TRUE(archive.isInstalled());
    QFile::rename(archive.script(), archive.script() + u".real"_s);
    QFile::link(archive.script() + u".real"_s, archive.script());
    EXPECT_TRUE(refuses()) << "a link could be to anything";
}

} // namespace
