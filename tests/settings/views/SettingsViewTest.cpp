#include "settings/views/SettingsView.h"

#include "ai/AIError.h"
#include "settings/views/SettingsStage.h"
#include "support/Printers.h"

#include <QAccessible>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>

#include <gmock/gmock.h>
#include <zbar.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class SettingsViewTest : public testing::Test, protected SettingsStage {
protected:
    SettingsViewTest() { show(); }

    QStringList texts(const char *name) const
    {
        QStringList result;
        for (const QLabel *label : view.findChildren<QLabel *>(QString::fromLatin1(name)))
            if (label->isVisible())
                result.append(label->text());
        return result;
    }
};

QString decoded(const QImage &picture)
{
    const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
    QByteArray pixels;
    for (int y = 0; y < grey.height(); ++y)
        pixels.append(reinterpret_cast<const char *>(grey.constScanLine(y)), grey.width());
    zbar::Image image(static_cast<unsigned>(grey.width()), static_cast<unsigned>(grey.height()), "Y800",
        pixels.constData(), static_cast<unsigned long>(pixels.size()));
    zbar::ImageScanner scanner;
    scanner.scan(image);
    const auto symbol = image.symbol_begin();
    return symbol == image.symbol_end() ? QString() : QString::fromStdString(symbol->get_data());
}

} // namespace

TEST_F(SettingsViewTest, TheKeyIsKeptAsItIsTypedAndTested)
{
    EXPECT_FALSE(at("testKey").isEnabled());
    EXPECT_EQ(at<QLineEdit>("apiKey").echoMode(), QLineEdit::Password);
    QTest::keyClicks(&at("apiKey"), u" sk-1 "_s);
    EXPECT_EQ(config().apiKey, u"sk-1"_s);
    press("testKey");
    EXPECT_EQ(text("testKey"), u"测试中…"_s);
    EXPECT_FALSE(at("testKey").isEnabled());
    ai.fail(AIError(AIError::Kind::unauthorized));
    settle();
    EXPECT_EQ(text("testResult"), AIError(AIError::Kind::unauthorized).text());
    press("testKey");
    ai.reply(Notebook::explained("reluctant"));
    settle();
    EXPECT_EQ(text("testResult"), u"成功：reluctant = 意思"_s);
    EXPECT_EQ(text("testKey"), u"测试"_s);

    EXPECT_FALSE(shows("baseURL"));
    press("advanced");
    ASSERT_TRUE(shows("baseURL"));
    at<QLineEdit>("model").selectAll();
    QTest::keyClicks(&at("model"), u"other"_s);
    EXPECT_EQ(config().model, u"other"_s);

    EXPECT_FALSE(shows("addressHint"));
    view.activateWindow();
    at("baseURL").setFocus();
    at<QLineEdit>("baseURL").selectAll();
    QTest::keyClicks(&at("baseURL"), u"api.example.com/v1"_s);
    settle();
    EXPECT_TRUE(shows("addressHint"));
    at<QLineEdit>("baseURL").selectAll();
    QTest::keyClick(&at("baseURL"), Qt::Key_Delete);
    EXPECT_EQ(config().baseURL, QString()) << "it may be about to be typed anew";
    at("model").setFocus();
    settle();
    EXPECT_EQ(config().baseURL, AppConfig().baseURL);
    EXPECT_FALSE(shows("addressHint"));
}

TEST_F(SettingsViewTest, GrantsAreLookedAtAgainWhileItIsOpen)
{
    EXPECT_TRUE(shows("grantedAccessibility"));
    EXPECT_FALSE(shows("relaunch"));
    permissions.states[Grant::screenCapture] = {.canRequest = true, .needsRelaunch = true};
    notebook.clock.advance(1500ms);
    settle();
    EXPECT_EQ(text("grantScreenCapture"), u"去开启"_s);
    press("grantScreenCapture");
    EXPECT_THAT(permissions.requested, ElementsAre(Grant::screenCapture));
    press("relaunch");
    EXPECT_EQ(started.size(), 1);
    permissions.states[Grant::screenCapture] = {.granted = true};
    view.hide();
    notebook.clock.advance(10s);
    EXPECT_TRUE(find("grantScreenCapture")); // nobody looks
    show();
    EXPECT_FALSE(shows("grantScreenCapture"));
}

TEST_F(SettingsViewTest, AButtonStandsOnlyWhereItDoesSomething)
{
    permissions.states[Grant::accessibility] = {
        .granted = true, .note = u"辅助功能总线没有打开。"_s, .canRequest = true};
    permissions.states[Grant::screenCapture] = {.note = u"当前是 Wayland 会话。"_s};
    notebook.clock.advance(1500ms);
    settle();
    EXPECT_TRUE(shows("grantedAccessibility"));
    press("grantAccessibility");
    EXPECT_THAT(permissions.requested, ElementsAre(Grant::accessibility));
    EXPECT_TRUE(text("detailScreenCapture").endsWith(u"\n当前是 Wayland 会话。"_s));
    EXPECT_FALSE(shows("grantScreenCapture"));
    EXPECT_FALSE(shows("grantedScreenCapture"));
    EXPECT_FALSE(shows("relaunch"));
}

TEST_F(SettingsViewTest, SwitchesAndPickersFollowTheSettingsBothWays)
{
    press("launchAtLogin");
    EXPECT_TRUE(launch.enabled);
    launch.failure = u"no"_s;
    press("launchAtLogin");
    EXPECT_TRUE(at<QAbstractButton>("launchAtLogin").isChecked()); // it could not be switched off

    press("dwell");
    EXPECT_FALSE(config().dwellLookup);
    EXPECT_FALSE(shows("dwellSeconds"));
    notebook.configure([](AppConfig &changed) { changed.dwellLookup = true; }); // as by the menu
    EXPECT_TRUE(at<QAbstractButton>("dwell").isChecked());
    QTest::keyClick(&at("dwellSeconds"), Qt::Key_Right);
    EXPECT_EQ(config().dwellSeconds, 1.25);
    EXPECT_THAT(text("dwellValue"), testing::AnyOf(u"1.2 秒"_s, u"1.3 秒"_s));
    QTest::keyClick(&at("dwellSeconds"), Qt::Key_End);
    EXPECT_EQ(config().dwellSeconds, 2.5);

    EXPECT_EQ(at<QComboBox>("regionKey").currentText(), u"⌘ Command（Super）"_s);
    const auto &access = *QAccessible::queryAccessibleInterface(&at("regionKey"));
    EXPECT_EQ(access.text(QAccessible::Name), u"连按哪个键"_s);
    EXPECT_EQ(access.text(QAccessible::Value), u"⌘ Command（Super）"_s);
    EXPECT_EQ(access.childCount(), 1);
    EXPECT_FALSE(shows("warningTaken"));
    QTest::keyClick(&at("regionKey"), Qt::Key_Up);
    EXPECT_EQ(config().regionKey, ModifierKey::option);
    EXPECT_TRUE(shows("warningTaken"));
    EXPECT_TRUE(shows("warningTwice"));
    press("hover");
    EXPECT_FALSE(shows("hoverKey"));
    EXPECT_FALSE(shows("warningTwice"));
}

TEST_F(SettingsViewTest, StepsStopAtTheirEnds)
{
    notebook.configure([](AppConfig &changed) { changed.graduateDays = 107; });
    press("graduateDaysMore");
    EXPECT_EQ(text("graduateDays"), u"记牢 114 天以上算掌握"_s);
    EXPECT_FALSE(config().studySettingsAt.isEmpty());
    view.activateWindow();
    notebook.configure([](AppConfig &changed) { changed.graduateDays = 107; });
    at("graduateDaysMore").setFocus();
    QTest::keyClick(&at("graduateDaysMore"), Qt::Key_Space);
    QTest::keyClick(&at("graduateDaysMore"), Qt::Key_Space); // and does not turn round
    EXPECT_EQ(text("graduateDays"), u"记牢 114 天以上算掌握"_s);
    EXPECT_TRUE(at("graduateDaysMore").hasFocus());
    at("graduateDaysLess").setFocus();
    EXPECT_FALSE(at("graduateDaysMore").isEnabled());
}

TEST_F(SettingsViewTest, ThePageScrollsAndTheWheelChangesNothing)
{
    const AppConfig before = config();
    for (const char *name : {"dwellSeconds", "hoverKey", "regionKey"}) {
        QWheelEvent wheel(QPointF(5, 5), at(name).mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&at(name), &wheel);
        EXPECT_FALSE(wheel.isAccepted()) << name;
    }
    EXPECT_EQ(config(), before);
}

TEST_F(SettingsViewTest, ProgramsAreAddedToAListByNameAndRemoved)
{
    EXPECT_THAT(texts("nameExcluded"), ElementsAre(u"Thunar 文件管理器"_s, u"gone"_s));
    press("addExcluded");
    QTest::keyClicks(&at("searchApplications"), u"nothing"_s);
    EXPECT_FALSE(at("chooseApplication").isEnabled());
    at<QLineEdit>("searchApplications").clear();
    QTest::keyClicks(&at("searchApplications"), u"pad"_s);
    QTest::keyClick(&at("searchApplications"), Qt::Key_Down);
    QTest::keyClick(&at("searchApplications"), Qt::Key_Return);
    settle();
    EXPECT_FALSE(find("applicationChooser"));
    EXPECT_THAT(config().excludedBundleIDs, ElementsAre(u"files"_s, u"gone"_s, u"Mousepad"_s));
    for (int i = 0; i < 3; ++i)
        press("removeExcluded");
    EXPECT_TRUE(config().excludedBundleIDs.isEmpty());
    EXPECT_TRUE(texts("nameExcluded").isEmpty());
    EXPECT_TRUE(shows("addExcluded"));
    press("addNoCopy");
    QTest::keyClicks(&at("searchApplications"), u"xterm"_s);
    QTest::keyClick(&at("searchApplications"), Qt::Key_Return);
    settle();
    EXPECT_THAT(config().noCopyBundleIDs, ElementsAre(u"XTerm"_s));
    EXPECT_THAT(texts("nameNoCopy"), ElementsAre(u"XTerm"_s));
    EXPECT_TRUE(config().excludedBundleIDs.isEmpty());
    press("removeNoCopy");
    EXPECT_TRUE(config().noCopyBundleIDs.isEmpty());
}

TEST_F(SettingsViewTest, ASyncCodeIsTriedBeforeItIsKept)
{
    const QString code = u"nimbrelle://sync?server=https://home.example:8443&token=uPt7cX3kQnA9sD1f&pin="_s
        + QString(64, u'a');
    EXPECT_FALSE(at("connectSync").isEnabled());
    QTest::keyClicks(&at("syncCode"), u"https://home.example"_s);
    QTest::keyClick(&at("syncCode"), Qt::Key_Return);
    EXPECT_EQ(text("syncMessage"), u"这不是同步码。同步码以 nimbrelle://sync? 开头"_s);
    at<QLineEdit>("syncCode").setText(code);
    press("connectSync");
    EXPECT_EQ(text("connectSync"), u"连接中…"_s);
    EXPECT_FALSE(shows("syncMessage"));
    network.answer({.status = 401});
    EXPECT_EQ(text("syncMessage"), u"同步码里的密码不对"_s);
    EXPECT_TRUE(config().syncServer.isEmpty());
    QTest::keyClick(&at("syncCode"), Qt::Key_Return);
    network.answer({.status = 200});
    settle();
    EXPECT_EQ(text("syncHost"), u"已连接 home.example"_s);
    EXPECT_EQ(text("syncStatus"), u"正在同步…"_s);
    EXPECT_FALSE(at("syncNow").isEnabled());
    network.lose();
    EXPECT_TRUE(text("syncStatus").endsWith(u"。会自动再试"_s));
    press("syncNow");
    MemoryServer server;
    network.serve(server);
    EXPECT_EQ(text("syncStatus"), u"上次同步：刚刚"_s);
    notebook.clock.advance(61s);
    EXPECT_EQ(text("syncStatus"), u"上次同步：1 分钟前"_s);
    press("disconnectSync");
    EXPECT_TRUE(shows("syncCode"));
    EXPECT_EQ(at<QLineEdit>("syncCode").text(), QString());
    EXPECT_TRUE(config().syncToken.isEmpty());
}

TEST_F(SettingsViewTest, TheShownQrCodeIsTheSyncCode)
{
    link();
    EXPECT_FALSE(find("qr"));
    press("copyCode");
    EXPECT_EQ(text("copyCode"), u"已复制"_s);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), connection.link()->text());
    EXPECT_TRUE(QGuiApplication::clipboard()->mimeData()->hasFormat(u"x-kde-passwordManagerHint"_s));
    for (const auto scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
        theme.setScheme(scheme);
        settle();
        if (!shows("qr"))
            press("toggleQr");
        EXPECT_EQ(text("toggleQr"), u"隐藏二维码"_s);
        EXPECT_THAT(copied, ElementsAre(decoded(at("qr").grab().toImage())));
    }
    notebook.clock.advance(3s);
    EXPECT_EQ(text("copyCode"), u"复制同步码"_s);
    press("toggleQr");
    EXPECT_FALSE(find("qr")); // nor the password with it
    notebook.configure([](AppConfig &config) { config.syncToken = QString(4000, u'a'); });
    settle();
    press("toggleQr");
    EXPECT_TRUE(shows("qrRefusal"));
}

} // namespace nimbrelle
