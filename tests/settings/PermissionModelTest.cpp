#include "settings/PermissionModel.h"

#include "support/FakeDesktop.h"
#include "support/Printers.h"

#include <QCoreApplication>
#include <QProcess>
#include <QUrl>

#include <gtest/gtest.h>

namespace nimbrelle {

class PermissionModelTest : public testing::Test {
protected:
    FakePermissions permissions;
    FakeLaunchAtLogin launch;
    QStringList log, opened, acts;
    PermissionModel model{permissions, launch,
        {
            .systemLog = [this](const QString &line) { log.append(line); },
            .openUrl = [this](const QUrl &url) { opened.append(url.toString()); },
            .startDetached = [this](const QString &program,
                                 const QStringList &arguments) { acts = QStringList{program} + arguments; },
            .quit = [this] { acts.append(QStringLiteral("quit")); },
        }};
};

TEST_F(PermissionModelTest, TellsInTheRowWhatTheSessionCannotGive)
{
    permissions.states[Grant::screenCapture] = {false, QStringLiteral("这个会话不能截屏。")};
    const QList<PermissionRow> rows = model.rows();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0],
        (PermissionRow{Grant::accessibility, QStringLiteral("辅助功能"),
            QStringLiteral("用来读取你选中的文字、知道你按了哪个键。"), true, {}}));
    EXPECT_TRUE(rows[1].detail.endsWith(QStringLiteral("不会保存。\n这个会话不能截屏。")));
    EXPECT_FALSE(rows[1].granted);
    EXPECT_EQ(rows[1].request, QString()) << "a button would only pretend";
}

TEST_F(PermissionModelTest, OffersToAskWhereverAskingMayHelp)
{
    permissions.states[Grant::accessibility] = {true, QStringLiteral("总线没有打开。"), true};
    permissions.states[Grant::screenCapture] = {false, {}, true, true};
    const QList<PermissionRow> rows = model.rows();
    EXPECT_TRUE(rows[0].granted);
    EXPECT_EQ(rows[0].request, QStringLiteral("现在打开"));
    EXPECT_FALSE(rows[0].needsRelaunch);
    EXPECT_EQ(rows[1].request, QStringLiteral("去开启"));
    EXPECT_TRUE(rows[1].needsRelaunch);
}

TEST_F(PermissionModelTest, LogsAFailedLaunchSwitchAndLeavesItAsItWas)
{
    model.setLaunchAtLogin(true);
    EXPECT_TRUE(model.launchAtLogin());
    launch.failure = QStringLiteral("磁盘满了");
    model.setLaunchAtLogin(false);
    EXPECT_TRUE(model.launchAtLogin());
    EXPECT_EQ(log, QStringList{QStringLiteral("Nimbrelle: 设置开机启动失败 磁盘满了")});
}

TEST_F(PermissionModelTest, OpensOnlyAddresses)
{
    for (const char *text : {"https://example.org/a", "no address", "", "http://a b/"})
        model.open(QString::fromUtf8(text));
    EXPECT_EQ(opened, QStringList{QStringLiteral("https://example.org/a")});
}

TEST_F(PermissionModelTest, RelaunchHandsThePathOverWhole)
{
    model.relaunch(QStringLiteral("/opt/a \"b\"/$(nimbrelle)"));
    ASSERT_EQ(acts.size(), 6);
    EXPECT_FALSE(acts[2].contains(QStringLiteral("nimbrelle")));
    EXPECT_EQ(acts[3], QStringLiteral("/opt/a \"b\"/$(nimbrelle)"));
    EXPECT_EQ(acts[4], QString::number(QCoreApplication::applicationPid()));
    EXPECT_EQ(acts[5], QStringLiteral("quit"));
}

TEST_F(PermissionModelTest, RelaunchWaitsForThisProcessHoweverLongItTakesToEnd)
{
    QProcess old, next;
    old.start(QStringLiteral("cat"), QStringList());
    ASSERT_TRUE(old.waitForStarted());
    model.relaunch(QStringLiteral("/bin/true"));
    acts[4] = QString::number(old.processId());
    next.start(acts[0], acts.mid(1, 4));
    EXPECT_FALSE(next.waitForFinished(1500));
    old.closeWriteChannel();
    EXPECT_TRUE(old.waitForFinished());
    EXPECT_TRUE(next.waitForFinished());
}

} // namespace nimbrelle
