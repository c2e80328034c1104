#include "platform/linux/files/DesktopFileApplications.h"

#include "support/Printers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

/// A data folder of its own for the session's programs.
class DesktopFileApplicationsTest : public testing::Test {
protected:
    DesktopFileApplicationsTest()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(u"own"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(folder.filePath(u"system"_s)));
    }
    ~DesktopFileApplicationsTest() override
    {
        m_home.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", m_home);
        m_dirs.isNull() ? qunsetenv("XDG_DATA_DIRS") : qputenv("XDG_DATA_DIRS", m_dirs);
    }
    void install(const QString &path, const QByteArray &keys) const
    {
        const QString whole = folder.filePath(path);
        QDir().mkpath(whole.section(u'/', 0, -2));
        QFile file(whole);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\n" + keys);
    }

    QTemporaryDir folder;

private:
    const QByteArray m_home = qgetenv("XDG_DATA_HOME");
    const QByteArray m_dirs = qgetenv("XDG_DATA_DIRS");
};

TEST_F(DesktopFileApplicationsTest, AreWhatMenusShow)
{
    install(u"system/applications/reader.desktop"_s,
        "Name=reader\nIcon=book\nExec=/usr/bin/reader %U\nStartupWMClass=Reader\n");
    install(u"system/applications/kde/player.desktop"_s, "Name=Player\nExec=player\n");
    install(u"system/applications/gone.desktop"_s, "Name=Gone\n");
    install(u"own/applications/gone.desktop"_s, "Name=Gone\nHidden=true\n");
    install(u"system/applications/helper.desktop"_s, "Name=Helper\nNoDisplay=true\n");
    install(u"system/applications/org.gnome.Nautilus.desktop"_s, "Name=Files\nExec=nautilus\n");
    install(u"system/applications/broken.desktop"_s, "Icon=none\n");
    EXPECT_THAT(DesktopFileApplications([] { return QList<WindowClass>(); }).all(),
        ElementsAre(InstalledApplication{u"com.apple.finder"_s, u"Files"_s, {}, u"nautilus"_s},
            InstalledApplication{u"kde-player"_s, u"Player"_s, {}, u"player"_s},
            InstalledApplication{u"Reader"_s, u"reader"_s, u"book"_s, u"reader"_s}));
}

TEST(BundleIDOf, IsTheClassThatTheWindowWillHave)
{
    DesktopEntry entry{.name = u"Mousepad"_s, .program = u"mousepad"_s};
    const QString id = u"org.xfce.mousepad"_s;
    EXPECT_EQ(bundleIDOf(entry, id, {}), id);
    EXPECT_EQ(bundleIDOf(entry, id, {{u"x"_s, u"Other"_s}, {u"mousepad"_s, u"Mousepad"_s}}), u"Mousepad"_s);
    entry.windowClass = u"Pad"_s;
    EXPECT_EQ(bundleIDOf(entry, id, {}), u"Pad"_s);
    EXPECT_EQ(bundleIDOf({.name = u"Mail"_s, .program = u"xterm"_s}, u"mutt"_s, {}), u"com.apple.Terminal"_s);
}

} // namespace
