#include "shell/views/StatusPopup.h"

#include "shell/StatusMenu.h"
#include "shell/views/StatusPictures.h"
#include "support/Printers.h"
#include "support/Words.h"
#include "widgets/Theme.h"

#include <QDir>
#include <QScreen>
#include <QTest>
#include <QWidgetAction>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

StatusMenu::State fullState()
{
    StatusMenu::State state;
    state.word = wordNamed(u"deprecate"_s);
    state.word->meaningZh = u"弃用，不再推荐使用"_s;
    state.config.dwellLookup = false;
    state.dueCount = 12;
    state.learningCount = 24;
    state.spellPracticeCount = 6;
    state.wordCount = 186;
    state.journeyInstalled = true;
    state.launchesAtLogin = true;
    state.front = Application{.bundleID = u"firefox"_s, .name = u"Firefox"_s};
    return state;
}

const QRect clicked(10, 10, 22, 22);

class Popup : public testing::Test {
protected:
    Popup()
    {
        theme.applyToApplication();
        QObject::connect(
            &popup, &StatusPopup::chosen, [this](const MenuEntry &entry) { chosen.append(entry.title); });
    }
    ~Popup() override { popup.close(); }

    void open(const StatusMenu::State &state = fullState())
    {
        popup.popUp(StatusMenu::entries(state), clicked);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&popup));
    }
    QAction *line(const QString &start)
    {
        for (QAction *action : popup.actions())
            if (action->text().startsWith(start))
                return action;
        ADD_FAILURE() << "no line " << start.toStdString();
        return nullptr;
    }

    /// A click where the menu came up under the pointer only closes it, so the pointer comes from elsewhere.
    void clickOn(QAction *action)
    {
        const QPoint place = popup.actionGeometry(action).center();
        for (int x = 0; x < place.x(); x += 5)
            QTest::mouseMove(&popup, {x, place.y()});
        QTest::mouseClick(&popup, Qt::LeftButton, {}, place);
    }

    Theme theme;
    StatusPopup popup{theme};
    QStringList chosen;
};

TEST_F(Popup, AClickChoosesALineAndClosesTheMenu)
{
    open();
    clickOn(line(u"生词本"_s));
    EXPECT_THAT(chosen, ElementsAre(u"生词本（186 个）"_s));
    EXPECT_FALSE(popup.isVisible());
    open();
    clickOn(line(u"deprecate"_s));
    EXPECT_EQ(chosen.last(), u"deprecate  弃用，不再推荐使用"_s);
}

TEST_F(Popup, TheKeyOfALineChoosesItOnce)
{
    open();
    QTest::keyClick(&popup, Qt::Key_R);
    EXPECT_THAT(chosen, ElementsAre(u"开始复习（12 题）"_s));
    EXPECT_FALSE(popup.isVisible());
    open();
    QTest::keyClick(&popup, Qt::Key_X);
    EXPECT_TRUE(popup.isVisible());
    QTest::keyClick(&popup, Qt::Key_Comma);
    EXPECT_EQ(chosen.last(), u"设置…"_s);
}

TEST_F(Popup, ArrowsAndReturnWalkTheLines)
{
    open();
    QTest::keyClick(&popup, Qt::Key_Down);
    QTest::keyClick(&popup, Qt::Key_Down);
    EXPECT_EQ(popup.activeAction(), line(u"换一个"_s));
    QTest::keyClick(&popup, Qt::Key_Return);
    EXPECT_THAT(chosen, ElementsAre(u"换一个"_s));
}

TEST_F(Popup, StandsBesideWhatWasClicked)
{
    open();
    EXPECT_EQ(popup.pos(), QPoint(10, 32));
    popup.close();
    const QSize screen = popup.screen()->size();
    const QRect atBottom(10, screen.height() - 30, 22, 22);
    StatusMenu::State state = fullState();
    state.word.reset();
    popup.popUp(StatusMenu::entries(state), atBottom);
    EXPECT_LE(popup.geometry().bottom(), atBottom.top());
}

TEST_F(Popup, EachSymbolOfTheMenuHasAPicture)
{
    StatusMenu::State idle = fullState();
    idle.dueCount = 0;
    for (const QList<MenuEntry> &menu : {StatusMenu::entries(fullState()), StatusMenu::entries(idle)})
        for (const MenuEntry &entry : menu)
            EXPECT_EQ(menuIcon(entry.symbol).has_value(), !entry.symbol.isEmpty())
                << entry.symbol.toStdString();
    EXPECT_EQ(menuSymbol(u"rectangle.stack"_s, 32, Qt::black).size(), QSize(32, 32));
}

/// With NIMBRELLE_LOOK_DIR set the pictures are kept there, to be looked at.
TEST_F(Popup, CutsNothingOff)
{
    for (const double scale : {1.0, 2.0}) {
        for (const auto scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
            Theme look(scale);
            look.setScheme(scheme);
            look.applyToApplication();
            StatusPopup menu(look);
            menu.popUp(StatusMenu::entries(fullState()), clicked);
            ASSERT_TRUE(QTest::qWaitForWindowExposed(&menu));
            menu.setActiveAction(menu.actions()[3]);
            for (const QAction *action : menu.actions()) {
                if (action->isSeparator())
                    continue;
                const QWidget *widget = qobject_cast<const QWidgetAction *>(action)->defaultWidget();
                EXPECT_GE(widget->width(), widget->sizeHint().width()) << action->text().toStdString();
                EXPECT_GE(widget->x(), 0) << "a menu taller than the screen scrolls, and has one column";
                EXPECT_LE(widget->geometry().right(), menu.width()) << action->text().toStdString();
            }
            const QString folder = qEnvironmentVariable("NIMBRELLE_LOOK_DIR");
            if (!folder.isEmpty()) {
                QDir().mkpath(folder);
                menu.grab().save(u"%1/menu-%2-%3.png"_s.arg(
                    folder, scheme == Theme::Scheme::dark ? u"dark"_s : u"light"_s, QString::number(scale)));
            }
        }
    }
}

} // namespace

} // namespace nimbrelle
