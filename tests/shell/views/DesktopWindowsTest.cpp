#include "shell/views/DesktopWindows.h"

#include "support/ViewStage.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

TEST(DesktopWindows, AMessageIsDressedAsTheProgramAndGoesByReturn)
{
    Theme theme;
    theme.applyToApplication();
    DesktopWindows windows(theme, {}, [](WId) {});
    windows.showAlert(u"成长档案还没装好"_s, u"重新运行一次 build.sh 就会装好。"_s);
    ViewStage::settle();
    const auto all = QApplication::topLevelWidgets();
    const auto alert =
        std::ranges::find_if(all, [](const QWidget *each) { return each->objectName() == u"alert"; });
    ASSERT_NE(alert, all.end());
    const ViewStage user(**alert);
    EXPECT_EQ(user.text("alertTitle"), u"成长档案还没装好"_s);
    EXPECT_EQ(user.text("alertText"), u"重新运行一次 build.sh 就会装好。"_s);
    EXPECT_EQ(user.at("alertClose").property("kind"), u"primary"_s);
    if (const QString folder = qEnvironmentVariable("NIMBRELLE_LOOK_DIR"); !folder.isEmpty())
        (*alert)->grab().save(folder + u"/alert.png"_s);
    user.key(Qt::Key_Return);
    ViewStage::settle();
    EXPECT_EQ(std::ranges::count(QApplication::topLevelWidgets(), u"alert"_s, &QWidget::objectName), 0);
}

} // namespace nimbrelle
