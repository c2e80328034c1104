#include "shell/GrowthGenerator.h"

#include "frame/Failure.h"
#include "shell/GrowthArchive.h"
#include "support/Await.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using State = GrowthGenerator::State;

namespace {

/// The folder of the growth archive beside one of data files, and programs that only note how they were
/// called.
class Generator : public testing::Test, protected Notebook {
protected:
    QString programNamed(const QString &name) const
    {
        const QString path = directory.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        write(path, "#!/bin/sh\nprintf '%s' \"$1\" >\"$2\"\n");
        ::chmod(QFile::encodeName(path).constData(), 0755);
        return path;
    }

    GrowthGenerator calling(const QString &program) const { return {data, program, clock}; }

    static void write(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(text);
    }

    static mode_t modeOf(const QString &path)
    {
        struct stat status { };
        ::lstat(QFile::encodeName(path).constData(), &status);
        return status.st_mode & 07777;
    }

    /// Runs what is installed, as the menu does, and tells what it left.
    QByteArray report() const
    {
        GrowthArchive archive(data);
        bool isUpdated = false;
        QObject::connect(&archive, &GrowthArchive::updated, [&] { isUpdated = true; });
        archive.update();
        EXPECT_TRUE(waitUntil([&] { return isUpdated; }));
        return readFile(folder.report()).value_or("no report");
    }

    QStringList scripts() const { return QDir(folder.programs()).entryList(QDir::Files, QDir::Name); }

    AppPaths data{directory.filePath(u"data"_s)};
    GrowthFolder folder{data};
};

TEST_F(Generator, CallsTheProgramWhateverItsPathHolds)
{
    for (const QString &name : {u"nimbrelle"_s, u"it's \"a\" \\n {x} $HOME\n/程序 é"_s}) {
        const GrowthGenerator generator = calling(programNamed(name));
        generator.install();
        EXPECT_EQ(generator.state(), State::installed);
        EXPECT_EQ(report(), "--growth-archive") << name.toStdString();
        QFile::remove(folder.report());
    }
    EXPECT_EQ(modeOf(folder.script()), 0700U);
    EXPECT_EQ(modeOf(folder.programs()), 0700U);
}

TEST_F(Generator, GoesWithTheButtonThatItCameWith)
{
    const GrowthGenerator generator = calling(programNamed(u"nimbrelle"_s));
    EXPECT_EQ(generator.state(), State::absent);
    generator.toggle();
    EXPECT_EQ(calling(u"/elsewhere/nimbrelle"_s).state(), State::outdated);
    EXPECT_EQ(report(), "--growth-archive");
    generator.toggle();
    EXPECT_EQ(generator.state(), State::absent);
    EXPECT_FALSE(QFileInfo::exists(folder.programs()));
    EXPECT_TRUE(QFileInfo::exists(folder.report())) << "the report is the user's";
    generator.remove();
}

TEST_F(Generator, KeepsAScriptThatIsNotOurs)
{
    const GrowthGenerator generator = calling(programNamed(u"nimbrelle"_s));
    QDir().mkpath(folder.programs());
    write(folder.script(), "print('mine')\n");
    EXPECT_EQ(generator.state(), State::foreign);
    generator.remove();
    EXPECT_EQ(readFile(folder.script()), "print('mine')\n");
    generator.install();
    ASSERT_EQ(scripts().size(), 2);
    EXPECT_EQ(readFile(folder.programs() + u'/' + scripts().first()), "print('mine')\n")
        << scripts().first().toStdString();

    write(folder.script(), "print('mine, too')\n"); // within the same second
    EXPECT_THROW(generator.install(), Failure);
    EXPECT_EQ(readFile(folder.script()), "print('mine, too')\n");
    clock.advance(std::chrono::seconds{1});
    generator.install();
    EXPECT_EQ(scripts().size(), 3);
    generator.remove();
    EXPECT_EQ(scripts().size(), 2) << "the kept ones stay";
}

TEST_F(Generator, WritesThroughNoLinkAndClosesWhatOthersCouldChange)
{
    const GrowthGenerator generator = calling(programNamed(u"nimbrelle"_s));
    QDir().mkpath(folder.programs());
    const QString theirs = directory.filePath(u"theirs.py"_s);
    write(theirs, "precious");
    QFile::link(theirs, folder.script());
    EXPECT_EQ(generator.state(), State::foreign);
    generator.install();
    EXPECT_EQ(readFile(theirs), "precious");
    EXPECT_EQ(generator.state(), State::installed);

    ::chmod(QFile::encodeName(folder.path()).constData(), 0775);
    EXPECT_EQ(generator.state(), State::unsafe);
    generator.toggle();
    EXPECT_EQ(generator.state(), State::installed);
    EXPECT_EQ(modeOf(folder.path()), 0755U);

    QDir(folder.path()).removeRecursively();
    QFile::link(directory.path(), folder.path());
    EXPECT_THROW(generator.install(), Failure);
    EXPECT_NE(generator.state(), State::installed);
}

} // namespace
