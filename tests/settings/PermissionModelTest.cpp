#include "settings/PermissionModel.h"

#include "support/FakeDesktop.h"
#include "support/Printers.h"

#include <QCoreApplication>
#include <QProcess>
#include <QUrl>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

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
            .quit = [this] { acts.append(u"quit"_s); },
        }};
};

TEST_F(PermissionModelTest, TellsInTheRowWhatTheSessionCannotGive)
{
    permissions.states[Grant::screenCapture] = {false, u"这个会话不能截屏。"_s};
    const QList<PermissionRow> rows = model.rows();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0],
        (PermissionRow{
            Grant::accessibility, u"辅助功能"_s, u"用来读取你选中的文字、知道你按了哪个键。"_s, true, {}}));
    EXPECT_TRUE(rows[1].detail.endsWith(u"不会保存。\n这个会话不能截屏。"_s));
    EXPECT_FALSE(rows[1].granted);
    EXPECT_EQ(rows[1].request, QString()) << "a button would only pretend";
}

TEST_F(PermissionModelTest, OffersToAskWhereverAskingMayHelp)
{
    permissions.states[Grant::accessibility] = {true, u"总线没有打开。"_s, true};
    permissions.states[Grant::screenCapture] = {false, {}, true, true};
    const QList<PermissionRow> rows = model.rows();
    EXPECT_TRUE(rows[0].granted);
    EXPECT_EQ(rows[0].request, u"现在打开"_s);
    EXPECT_FALSE(rows[0].needsRelaunch);
    EXPECT_EQ(rows[1].request, u"去开启"_s);
    EXPECT_TRUE(rows[1].needsRelaunch);
}

TEST_F(PermissionModelTest, LogsAFailedLaunchSwitchAndLeavesItAsItWas)
{
    model.setLaunchAtLogin(true);
    EXPECT_TRUE(model.launchAtLogin());
    launch.failure = u"磁盘满了"_s;
    model.setLaunchAtLogin(false);
    EXPECT_TRUE(model.launchAtLogin());
    EXPECT_EQ(log, QStringList{u"Nimbrelle: 设置开机启动失败 磁盘满了"_s});
}

TEST_F(PermissionModelTest, OpensOnlyAddresses)
{
    for (const char *text : {"https://example.org/a", "no address", "", "http://a b/"})
        model.open(QString::fromUtf8(text));
    EXPECT_EQ(opened, QStringList{u"https://example.org/a"_s});
}

TEST_F(PermissionModelTest, RelaunchHandsThePathOverWhole)
{
    model.relaunch(u"/opt/a \"b\"/$(nimbrelle)"_s);
    ASSERT_EQ(acts.size(), 6);
    EXPECT_FALSE(acts[2].contains(u"nimbrelle"_s));
    EXPECT_EQ(acts[3], u"/opt/a \"b\"/$(nimbrelle)"_s);
    EXPECT_EQ(acts[4], QString::number(QCoreApplication::applicationPid()));
    EXPECT_EQ(acts[5], u"quit"_s);
}

TEST_F(PermissionModelTest, RelaunchWaitsForThisProcessHoweverLongItTakesToEnd)
{
    QProcess old, next;
    old.start(u"cat"_s, QStringList());
    ASSERT_TRUE(old.waitForStarted());
    model.relaunch(u"/bin/true"_s);
    acts[4] = QString::number(old.processId());
    next.start(acts[0], acts.mid(1, 4));
    EXPECT_FALSE(next.waitForFinished(1500));
    old.closeWriteChannel();
    EXPECT_TRUE(old.waitForFinished());
    EXPECT_TRUE(next.waitForFinished());
}

} // namespace nimbrelle
