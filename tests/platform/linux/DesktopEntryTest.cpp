#include "platform/linux/files/DesktopEntry.h"

#include "platform/linux/files/AutostartFile.h"
#include "support/Printers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

TEST(DesktopEntry, TheNameIsTakenInTheFirstLanguageThatHasOne)
{
    const QByteArray file = "# a comment\n[Desktop Entry]\nName=Files\nName[zh_CN]=\xe6\x96\x87\xe4\xbb\xb6\n"
                            "StartupWMClass = Nautilus\n\n[Desktop Action new]\nName=New Window\n";
    const auto chinese = desktopEntryOf(file, {QStringLiteral("zh_CN"), QStringLiteral("de")});
    ASSERT_TRUE(chinese);
    EXPECT_EQ(chinese->name, QStringLiteral("文件"));
    EXPECT_EQ(chinese->windowClass, QStringLiteral("Nautilus"));
    EXPECT_EQ(desktopEntryOf(file, {QStringLiteral("de")})->name, QStringLiteral("Files"));
    EXPECT_EQ(desktopEntryOf("[Other]\nName=x\n", {}), std::nullopt);
    EXPECT_EQ(desktopEntryOf("", {}), std::nullopt);
}

TEST(DesktopEntry, CommandsAreQuotedSoThatNothingInThemIsSpecial)
{
    const QByteArray entry = autostartEntry(
        QStringLiteral("Nimbrelle"), {QStringLiteral("/opt/a b/$x`\"\\100%"), QStringLiteral("--quiet")});
    EXPECT_EQ(entry,
        "[Desktop Entry]\nType=Application\nName=Nimbrelle\n"
        "Exec=\"/opt/a b/\\\\$x\\\\`\\\\\"\\\\\\\\100%%\" \"--quiet\"\nTerminal=false\n");
}

TEST(AutostartFile, IsTurnedOnAndOff)
{
    const QTemporaryDir folder;
    AutostartFile file(
        folder.filePath(QStringLiteral("config/autostart")), {QStringLiteral("/usr/bin/nimbrelle")});
    EXPECT_FALSE(file.isEnabled());
    EXPECT_EQ(file.setEnabled(false), std::nullopt);
    EXPECT_EQ(file.setEnabled(true), std::nullopt);
    EXPECT_TRUE(file.isEnabled());

    // Some sessions switch an entry off without removing it.
    QFile entry(folder.filePath(QStringLiteral("config/autostart/nimbrelle.desktop")));
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
    QFile inTheWay(folder.filePath(QStringLiteral("autostart")));
    ASSERT_TRUE(inTheWay.open(QFile::WriteOnly));
    AutostartFile file(folder.filePath(QStringLiteral("autostart")), {QStringLiteral("/usr/bin/nimbrelle")});
    const auto failure = file.setEnabled(true);
    ASSERT_TRUE(failure);
    EXPECT_TRUE(failure->contains(QStringLiteral("nimbrelle.desktop")));
    EXPECT_FALSE(file.isEnabled());
}

} // namespace
