#include "frame/Clock.h"
#include "platform/linux/LinuxSingleInstance.h"
#include "support/ManualClock.h"
#include "support/Printers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <csignal>
#include <future>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Claim = SingleInstance::Claim;

struct Given {
    std::optional<int> code;
    QString printed;
};

class SingleInstanceTest : public testing::Test {
protected:
    QString data(const QString &name)
    {
        QDir(folder.path()).mkpath(name);
        return folder.filePath(name);
    }
    std::unique_ptr<LinuxSingleInstance> start(const QString &dataDirectory)
    {
        return start(dataDirectory, folder.path());
    }
    std::unique_ptr<LinuxSingleInstance> start(const QString &dataDirectory, const QString &runtimeDirectory)
    {
        return std::make_unique<LinuxSingleInstance>(dataDirectory,
            LinuxSingleInstance::Surroundings{.runtimeDirectory = runtimeDirectory, .patience = patience});
    }
    static Claim claim(const std::unique_ptr<LinuxSingleInstance> &instance) { return instance->claim({}); }

    /// A command beside the programs of this thread.
    Given give(const QString &directory, const GivenCommand &command)
    {
        auto given = std::async(std::launch::async, [=, this] {
            Given result;
            QTextStream out(&result.printed);
            result.code = start(directory)->claimOrGive(command, out);
            return result;
        });
        while (given.wait_for(0s) != std::future_status::ready)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return given.get();
    }

    QTemporaryDir folder;
    CommandPatience patience{.forDirectory = 30ms, .forGreeting = 10s, .forLifeSign = 10s};
};

TEST_F(SingleInstanceTest, TheSecondTellsTheFirstAndGivesWay)
{
    const auto first = start(data(u"a"_s));
    QSignalSpy reopened(first.get(), &SingleInstance::reopened);
    EXPECT_EQ(claim(first), Claim::ours);
    for (int round = 1; round <= 2; ++round) {
        EXPECT_EQ(claim(start(data(u"a"_s))), Claim::told);
        EXPECT_TRUE(reopened.wait());
        EXPECT_EQ(reopened.size(), round);
    }
}

TEST_F(SingleInstanceTest, OneDirectoryUnderTwoNamesIsOne)
{
    const auto first = start(data(u"a"_s));
    QSignalSpy reopened(first.get(), &SingleInstance::reopened);
    EXPECT_EQ(claim(first), Claim::ours);
    ASSERT_TRUE(QFile::link(data(u"a"_s), folder.filePath(u"link"_s)));
    EXPECT_EQ(claim(start(folder.filePath(u"link"_s))), Claim::told);
    EXPECT_TRUE(reopened.wait());
}

TEST_F(SingleInstanceTest, TwoDirectoriesLiveSideBySide)
{
    const auto first = start(data(u"a"_s));
    const auto second = start(data(u"b"_s));
    QSignalSpy reopened(first.get(), &SingleInstance::reopened);
    EXPECT_EQ(claim(first), Claim::ours);
    EXPECT_EQ(claim(second), Claim::ours);
    EXPECT_EQ(claim(start(data(u"b"_s))), Claim::told);
    EXPECT_FALSE(reopened.wait(100));
}

TEST_F(SingleInstanceTest, WhatAKilledProcessLeftHoldsNobodyUp)
{
    const QString directory = data(u"a"_s);
    const pid_t child = ::fork();
    if (child == 0) {
        const auto killed = start(directory);
        ::kill(::getpid(), claim(killed) == Claim::ours ? SIGKILL : SIGTERM);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(WTERMSIG(status), SIGKILL);
    ASSERT_EQ(QDir(folder.path()).entryList({u"*.socket"_s}, QDir::System).size(), 1);

    const auto next = start(directory);
    QSignalSpy reopened(next.get(), &SingleInstance::reopened);
    EXPECT_EQ(claim(next), Claim::ours);
    EXPECT_EQ(claim(start(directory)), Claim::told);
    EXPECT_TRUE(reopened.wait());
}

TEST_F(SingleInstanceTest, WithoutARuntimeDirectoryTheFirstIsToldElsewhere)
{
    const auto first = start(data(u"a"_s), folder.filePath(u"missing"_s));
    QSignalSpy reopened(first.get(), &SingleInstance::reopened);
    EXPECT_EQ(claim(first), Claim::ours);
    EXPECT_EQ(claim(start(data(u"a"_s))), Claim::told) << "from where there is one";
    EXPECT_TRUE(reopened.wait());
}

TEST_F(SingleInstanceTest, ADirectoryThatCannotBeLockedIsNoReasonNotToStart)
{
    EXPECT_EQ(claim(start(folder.filePath(u"missing"_s))), Claim::ours);
}

TEST_F(SingleInstanceTest, TheRunningProgramDoesACommandAndItsAnswerIsPrinted)
{
    const auto program = start(data(u"a"_s));
    const QSignalSpy reopened(program.get(), &SingleInstance::reopened);
    GivenCommand got;
    program->claim([&](GivenCommand command, QTextStream *out) -> QCoro::Task<int> {
        got = command;
        *out << u"第一行"_s << Qt::endl;
        co_await SystemClock::shared().sleep(0ms, {});
        *out << u"no end"_s;
        co_return 3;
    });
    const GivenCommand command{.option = u"--add-spelling"_s, .value = u"放弃|\n\"x\""_s};
    const Given given = give(data(u"a"_s), command);
    EXPECT_EQ(given.code, 3);
    EXPECT_EQ(given.printed, u"第一行\nno end"_s);
    EXPECT_EQ(got, command);
    EXPECT_EQ(reopened.size(), 0);
}

TEST_F(SingleInstanceTest, ACommandThatWritesHoldsTheDirectoryWhileItWorks)
{
    auto command = start(data(u"a"_s));
    QString printed;
    QTextStream out(&printed);
    EXPECT_EQ(command->claimOrGive({}, out), std::nullopt);
    EXPECT_EQ(claim(start(data(u"a"_s))), Claim::refused);
    EXPECT_EQ(start(data(u"a"_s))->claimOrGive({}, out), 1);
    EXPECT_EQ(printed, u"Nimbrelle 或它的另一个命令一直占着这个数据文件夹，所以什么也没有做。\n"_s);

    patience.forDirectory = 10s;
    auto waiting = std::async(std::launch::async, [this] {
        QTextStream nowhere(stderr);
        return start(data(u"a"_s))->claimOrGive({}, nowhere);
    });
    command.reset();
    EXPECT_EQ(waiting.get(), std::nullopt);
}

TEST_F(SingleInstanceTest, AProgramThatHangsIsGivenNoCommand)
{
    const auto program = start(data(u"a"_s));
    bool isRun = false;
    program->claim([&](GivenCommand, QTextStream *) -> QCoro::Task<int> {
        isRun = true;
        co_return 0;
    });
    patience.forGreeting = 10ms;
    QString printed;
    QTextStream out(&printed);
    EXPECT_EQ(start(data(u"a"_s))->claimOrGive({.option = u"--sync-now"_s, .value = {}}, out), 1);
    EXPECT_EQ(printed, u"Nimbrelle 正在运行，但没有回应，所以什么也没有做。\n"_s);
    QCoreApplication::processEvents();
    EXPECT_FALSE(isRun);
}

TEST_F(SingleInstanceTest, AProgramThatEndsInTheMiddleOfACommandIsTold)
{
    ManualClock clock;
    auto program = start(data(u"a"_s));
    program->claim([&](GivenCommand, QTextStream *out) -> QCoro::Task<int> {
        *out << u"一半"_s << Qt::endl;
        QTimer::singleShot(0, [&] { program.reset(); });
        co_await clock.sleep(1s, {});
        *out << u"too late"_s << Qt::endl;
        co_return 0;
    });
    const Given given = give(data(u"a"_s), {.option = u"--sync-now"_s, .value = {}});
    clock.advance(1s);
    EXPECT_EQ(given.code, 1);
    EXPECT_EQ(given.printed, u"一半\n正在运行的 Nimbrelle 没有答完；做到了哪一步，要在 Nimbrelle 里看。\n"_s);
}

TEST_F(SingleInstanceTest, WhatOnlyTheProgramCanDoStartsIt)
{
    patience.forDirectory = 20s;
    std::unique_ptr<LinuxSingleInstance> program;
    std::promise<void> asked;
    int starts = 0;
    auto given = std::async(std::launch::async, [&] {
        Given result;
        QTextStream out(&result.printed);
        const auto beginning = [&] {
            ++starts;
            asked.set_value();
            return [] { return true; };
        };
        result.code = start(data(u"a"_s))->giveToProgram({.option = u"--x"_s, .value = {}}, beginning, out);
        return result;
    });
    asked.get_future().wait();
    program = start(data(u"a"_s));
    QString got;
    EXPECT_EQ(program->claim([&](const GivenCommand &command, QTextStream *) -> QCoro::Task<int> {
        got = command.option;
        co_return 0;
    }),
        Claim::ours);
    while (given.wait_for(0s) != std::future_status::ready)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_EQ(given.get().code, 0);
    EXPECT_EQ(got, u"--x"_s);
    EXPECT_EQ(starts, 1);
}

TEST_F(SingleInstanceTest, AProgramThatDoesNotStartIsTold)
{
    patience.forDirectory = 20s;
    QString printed;
    QTextStream out(&printed);
    int asked = 0;
    const auto failing = [&] { return [&] { return ++asked < 3; }; };
    EXPECT_EQ(start(data(u"a"_s))->giveToProgram({}, failing, out), 1);
    EXPECT_EQ(printed, u"Nimbrelle 没有启动起来，所以什么也没有做。\n"_s);
    EXPECT_EQ(claim(start(data(u"a"_s))), Claim::ours);
}

} // namespace
