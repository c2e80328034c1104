#include "settings/views/SettingsStage.h"

#include <QAccessible>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

#include <gmock/gmock.h>

// The page as a whole: what it leads to, what it tells of files, and that it stays where it is.
namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class SettingsPageTest : public testing::Test, protected SettingsStage {
protected:
    SettingsPageTest() { show(); }
};

} // namespace

TEST_F(SettingsPageTest, LeadsToTheOtherWindows)
{
    EXPECT_FALSE(shows("offer1"));
    offers = {{.title = u"开始复习（1 题）"_s, .action = 1}, {.title = u"退出 Nimbrelle"_s, .action = 2}};
    notebook.clock.advance(1500ms);
    settle();
    QStringList chosen;
    QObject::connect(
        &view, &SettingsView::offerChosen, [&chosen](const MenuEntry &entry) { chosen.append(entry.title); });
    view.activateWindow();
    at("offer1").setFocus();
    offers[0].title = u"现在没有要复习的"_s;
    view.refreshOffers();
    EXPECT_TRUE(at("offer1").hasFocus());
    press("offer1");
    press("offer2");
    EXPECT_THAT(chosen, ElementsAre(u"现在没有要复习的"_s, u"退出 Nimbrelle"_s));
    offers.clear();
    view.refreshOffers();
    EXPECT_FALSE(shows("offer1"));
    QSignalSpy words(&view, &SettingsView::wordsRequested), add(&view, &SettingsView::addWordRequested);
    press("addWord");
    press("openWords");
    EXPECT_EQ(QList({words.size(), add.size()}), QList<qsizetype>({1, 1}));
    notebook.save("reluctant");
    settle();
    EXPECT_EQ(text("wordCount"), u"已保存 1 个词"_s);
}

TEST_F(SettingsPageTest, ADamagedFileThatWasKeptIsNamedWhileItIsThere)
{
    EXPECT_FALSE(shows("keptFiles"));
    const QString kept = notebook.paths.supportDir + u"/words.damaged-20261123-142233.json"_s;
    ASSERT_TRUE(replaceFile(kept, "{"));
    notebook.clock.advance(1500ms);
    EXPECT_TRUE(shows("keptFiles"));
    EXPECT_TRUE(text("keptFiles").endsWith(u"：words.damaged-20261123-142233.json"_s));
    QFile::remove(kept);
    notebook.clock.advance(1500ms);
    EXPECT_FALSE(shows("keptFiles"));
}

TEST_F(SettingsPageTest, AFileThatCannotBeWrittenIsNamedUntilItIsWritten)
{
    EXPECT_FALSE(shows("unwrittenFiles"));
    writer.report(notebook.paths.words, {.error = ENOSPC});
    notebook.clock.advance(1500ms);
    EXPECT_TRUE(shows("unwrittenFiles"));
    EXPECT_TRUE(text("unwrittenFiles").startsWith(u"写不进生词本（"_s));
    writer.report(notebook.paths.words, {});
    notebook.clock.advance(1500ms);
    EXPECT_FALSE(shows("unwrittenFiles"));
}

TEST_F(SettingsPageTest, WhatIsInViewStaysWhereItIsWhenThePageGrowsAboveIt)
{
    auto *bar = view.findChild<QScrollArea *>()->verticalScrollBar();
    const auto place = [&] { return at("connectSync").mapTo(&view, QPoint(0, 0)); };
    for (const int value : {300, bar->maximum()}) {
        bar->setValue(value);
        const QPoint before = place();
        offers = {{.title = u"开始复习（1 题）"_s, .action = 1}};
        view.refreshOffers();
        settle();
        EXPECT_GT(bar->value(), value);
        EXPECT_EQ(place(), before);
        offers.clear();
        view.refreshOffers();
        settle();
        EXPECT_EQ(place(), before);
    }
    bar->setValue(0);
    offers = {{.title = u"开始复习（1 题）"_s, .action = 1}};
    view.refreshOffers();
    settle();
    EXPECT_EQ(bar->value(), 0) << "at the top the page grows as pages do";
}

TEST_F(SettingsPageTest, ANewThemeKeepsThePlaceAndWhatIsTyped)
{
    view.activateWindow();
    QTest::keyClicks(&at("syncCode"), u"half a co"_s);
    at("syncCode").setFocus();
    press("advanced");
    at("model").setFocus();
    theme.setScheme(Theme::Scheme::dark);
    settle();
    EXPECT_EQ(at<QLineEdit>("syncCode").text(), u"half a co"_s);
    EXPECT_TRUE(shows("model"));
    EXPECT_TRUE(at("model").hasFocus());
}

TEST_F(SettingsPageTest, EveryControlHasANameAndTabGoesDownThePage)
{
    offers = {{.title = u"生词本"_s, .action = 1}};
    view.refreshOffers();
    QWidget &page = *view.findChild<QScrollArea *>()->widget();
    view.activateWindow();
    const auto pass = [&] {
        settle();
        at("offer1").setFocus();
        int lowest = 0;
        int stops = 0;
        for (QWidget *widget = QApplication::focusWidget(); widget; widget = QApplication::focusWidget()) {
            EXPECT_FALSE(widget->objectName().isEmpty());
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
            const int bottom = widget->mapTo(&page, QPoint(0, widget->height())).y();
            EXPECT_GE(bottom, lowest) << widget->objectName().toStdString();
            lowest = bottom;
            ++stops;
            if (widget->objectName() == u"addNoCopy" || stops > 100)
                break;
            QTest::keyClick(widget, Qt::Key_Tab);
        }
        return stops;
    };
    const int unlinked = pass();
    link();
    const int linked = pass();
    EXPECT_GT(linked, 27);
    press("disconnectSync"); // and its section is made once more
    EXPECT_EQ(pass(), unlinked);
    offers.append({.title = u"退出 Nimbrelle"_s, .action = 2});
    view.refreshOffers();
    permissions.states[Grant::accessibility] = {.canRequest = true};
    notebook.clock.advance(1500ms);
    EXPECT_GT(pass(), unlinked);
}

TEST_F(SettingsPageTest, ABlankDoesNotReplaceWhatTabSelected)
{
    notebook.configure([](AppConfig &config) { config.apiKey = u"sk-1"_s; });
    view.activateWindow();
    const auto arrive = [this] {
        at("testKey").setFocus();
        QTest::keyClick(&at("testKey"), Qt::Key_Backtab);
        EXPECT_EQ(at<QLineEdit>("apiKey").selectedText().size(), 4);
    };
    arrive();
    key(Qt::Key_Shift);
    key(Qt::Key_Space);
    EXPECT_EQ(config().apiKey, u"sk-1"_s);
    QTest::keyClick(&at("apiKey"), Qt::Key_Backspace);
    arrive();
    commit("\u3000"); // by an input method in its full-width state
    EXPECT_EQ(config().apiKey, u"sk-1"_s);
    QTest::keyClick(&at("apiKey"), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&at("apiKey"), Qt::Key_Space);
    EXPECT_EQ(config().apiKey, QString()) << "the user's own selection is replaced";
}

} // namespace nimbrelle
