#include "platform/linux/LinuxSingleInstance.h"
#include "support/Printers.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

class SingleInstanceTest : public testing::Test {
protected:
    QString data(const QString &name)
    {
        QDir(folder.path()).mkpath(name);
        return folder.filePath(name);
    }
    std::unique_ptr<LinuxSingleInstance> start(const QString &dataDirectory)
    {
        return std::make_unique<LinuxSingleInstance>(dataDirectory, folder.path());
    }

    QTemporaryDir folder;
};

TEST_F(SingleInstanceTest, TheSecondTellsTheFirstAndGivesWay)
{
    const auto first = start(data(u"a"_s));
    QSignalSpy reopened(first.get(), &SingleInstance::reopened);
    EXPECT_TRUE(first->claim());
    for (int round = 1; round <= 2; ++round) {
        EXPECT_FALSE(start(data(u"a"_s))->claim());
        EXPECT_TRUE(reopened.wait());
        EXPECT_EQ(reopened.size(), round);
    }
}

TEST_F(SingleInstanceTest, OneDirectoryUnderTwoNamesIsOne)
{
    const auto first = start(data(u"a"_s));
    QSignalSpy reopened(first.get(), &SingleInstance::reopened);
    EXPECT_TRUE(first->claim());
    ASSERT_TRUE(QFile::link(data(u"a"_s), folder.filePath(u"link"_s)));
    EXPECT_FALSE(start(folder.filePath(u"link"_s))->claim());
    EXPECT_TRUE(reopened.wait());
}

TEST_F(SingleInstanceTest, TwoDirectoriesLiveSideBySide)
{
    const auto first = start(data(u"a"_s));
    const auto second = start(data(u"b"_s));
    QSignalSpy reopened(first.get(), &SingleInstance::reopened);
    EXPECT_TRUE(first->claim());
    EXPECT_TRUE(second->claim());
    EXPECT_FALSE(start(data(u"b"_s))->claim());
    EXPECT_FALSE(reopened.wait(100));
}

TEST_F(SingleInstanceTest, WhatAKilledProcessLeftHoldsNobodyUp)
{
    const QString directory = data(u"a"_s);
    const pid_t child = ::fork();
    if (child == 0) {
        const auto killed = start(directory);
        ::kill(::getpid(), killed->claim() ? SIGKILL : SIGTERM);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(WTERMSIG(status), SIGKILL);
    ASSERT_EQ(QDir(folder.path()).entryList({u"*.socket"_s}, QDir::System).size(), 1);

    const auto next = start(directory);
    QSignalSpy reopened(next.get(), &SingleInstance::reopened);
    EXPECT_TRUE(next->claim());
    EXPECT_FALSE(start(directory)->claim());
    EXPECT_TRUE(reopened.wait());
}

TEST_F(SingleInstanceTest, WithoutARuntimeDirectoryTheFirstIsToldElsewhere)
{
    const auto startWithout = [this] {
        return std::make_unique<LinuxSingleInstance>(data(u"a"_s), folder.filePath(u"missing"_s));
    };
    const auto first = startWithout();
    QSignalSpy reopened(first.get(), &SingleInstance::reopened);
    EXPECT_TRUE(first->claim());
    EXPECT_FALSE(startWithout()->claim());
    EXPECT_TRUE(reopened.wait());
}

TEST_F(SingleInstanceTest, ADirectoryThatCannotBeLockedIsNoReasonNotToStart)
{
    EXPECT_TRUE(start(folder.filePath(u"missing"_s))->claim());
}

} // namespace
