#include "platform/linux/files/DesktopEntry.h"

#include "platform/linux/files/AutostartFile.h"
#include "support/Printers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

TEST(DesktopEntry, TheNameIsTakenInTheFirstLanguageThatHasOne)
{
    const QByteArray file = "# a comment\n[Desktop Entry]\nName=Files\nName[zh_CN]=\xe6\x96\x87\xe4\xbb\xb6\n"
                            "StartupWMClass = Nautilus\n\n[Desktop Action new]\nName=New Window\n";
    const auto chinese = desktopEntryOf(file, {u"zh_CN"_s, u"de"_s});
    ASSERT_TRUE(chinese);
    EXPECT_EQ(chinese->name, u"文件"_s);
    EXPECT_EQ(chinese->windowClass, u"Nautilus"_s);
    EXPECT_EQ(desktopEntryOf(file, {u"de"_s})->name, u"Files"_s);
    EXPECT_EQ(desktopEntryOf("[Other]\nName=x\n", {}), std::nullopt);
    EXPECT_EQ(desktopEntryOf("", {}), std::nullopt);
}

TEST(DesktopEntry, CommandsAreQuotedSoThatNothingInThemIsSpecial)
{
    const QByteArray entry = autostartEntry(u"Nimbrelle"_s, {u"/opt/a b/$x`\"\\100%"_s, u"--quiet"_s});
    EXPECT_EQ(entry,
        "[Desktop Entry]\nType=Application\nName=Nimbrelle\n"
        "Exec=\"/opt/a b/\\\\$x\\\\`\\\\\"\\\\\\\\100%%\" \"--quiet\"\nTerminal=false\n");
}

TEST(AutostartFile, IsTurnedOnAndOff)
{
    const QTemporaryDir folder;
    AutostartFile file(folder.filePath(u"config/autostart"_s), {u"/usr/bin/nimbrelle"_s});
    EXPECT_FALSE(file.isEnabled());
    EXPECT_EQ(file.setEnabled(false), std::nullopt);
    EXPECT_EQ(file.setEnabled(true), std::nullopt);
    EXPECT_TRUE(file.isEnabled());

    // Some sessions switch an entry off without removing it.
    QFile entry(folder.filePath(u"config/autostart/nimbrelle.desktop"_s));
    ASSERT_TRUE(entry.open(QFile::Append));
    entry.write("X-GNOME-Autostart-enabled=false\n");
    entry.close();
    EXPECT_FALSE(file.isEnabled());
    EXPECT_EQ(file.setEnabled(true), std::nullopt);
    EXPECT_TRUE(file.isEnabled());
    EXPECT_EQ(file.setEnabled(false), std::nullopt);
    EXPECT_FALSE(entry.exists());
}

TEST(AutostartFile, AFailureIsToldAndChangesNothing)
{
    const QTemporaryDir folder;
    QFile inTheWay(folder.filePath(u"autostart"_s));
    ASSERT_TRUE(inTheWay.open(QFile::WriteOnly));
    AutostartFile file(folder.filePath(u"autostart"_s), {u"/usr/bin/nimbrelle"_s});
    const auto failure = file.setEnabled(true);
    ASSERT_TRUE(failure);
    EXPECT_TRUE(failure->contains(u"nimbrelle.desktop"_s));
    EXPECT_FALSE(file.isEnabled());
}

} // namespace
