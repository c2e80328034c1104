#include "settings/views/ApplicationChooser.h"
#include "settings/views/SettingsStage.h"
#include "shell/StatusMenu.h"

#include <QDir>
#include <QLayout>
#include <QScrollArea>
#include <QScrollBar>

#include <gmock/gmock.h>

/// Draws the settings in every state and looks for what is cut off. With NIMBRELLE_LOOK_DIR set the pictures
/// are kept there, to be looked at.
namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct Look {
    Theme::Scheme scheme;
    double scale;
};

class SettingsLook : public testing::TestWithParam<Look> {
protected:
    SettingsLook() : stage(GetParam().scale) { stage.theme.setScheme(GetParam().scheme); }

    void keep(QWidget &widget, const QString &state) const
    {
        const QString folder = qEnvironmentVariable("NIMBRELLE_LOOK_DIR");
        if (folder.isEmpty())
            return;
        QDir().mkpath(folder);
        const double ratio = GetParam().scale > 1 ? 1 : 2;
        QImage image(widget.size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(stage.theme.colour(Tone::paper));
        widget.render(&image);
        image.save(u"%1/settings-%2-%3%4.png"_s.arg(folder, state,
            GetParam().scheme == Theme::Scheme::dark ? u"dark"_s : u"light"_s,
            GetParam().scale > 1 ? u"-large"_s : QString()));
    }

    SettingsStage stage;
};

void expectWholeIn(const QWidget &page, const QString &state)
{
    for (const QWidget *widget : page.findChildren<QWidget *>()) {
        if (!widget->isVisible() || widget->objectName().startsWith(u"qt_"_s))
            continue;
        const QString name = state + u'/' + widget->objectName();
        EXPECT_TRUE(page.rect().contains(QRect(widget->mapTo(&page, QPoint(0, 0)), widget->size())))
            << name.toStdString() << ' ' << widget->metaObject()->className();
        if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
            EXPECT_GE(edit->height(), edit->heightForWidth(edit->width())) << name.toStdString();
        if (const auto *label = qobject_cast<const QLabel *>(widget); label && label->wordWrap())
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << name.toStdString();
        if (const auto *button = qobject_cast<const QPushButton *>(widget))
            EXPECT_GE(button->width(), button->sizeHint().width()) << name.toStdString();
    }
}

} // namespace

TEST_P(SettingsLook, NothingIsCutOff)
{
    stage.permissions.states[Grant::screenCapture] = {false,
        u"当前是 Wayland 会话，程序看不到其他窗口里的鼠标、按键和画面，划词、停留识别和框选都用不了。"
        "请在登录界面选择 X11（Xorg）会话。"_s};
    stage.notebook.configure([](AppConfig &config) {
        config.apiKey = u"sk-0123456789abcdef01234567"_s;
        config.regionKey = ModifierKey::option;
    });
    auto *scroll = stage.view.findChild<QScrollArea *>();
    const auto look = [&](const QString &state, bool whole) {
        SettingsStage::settle();
        if (whole) {
            stage.view.resize(
                stage.view.width(), scroll->widget()->layout()->totalHeightForWidth(stage.view.width()));
            SettingsStage::settle();
        }
        expectWholeIn(*scroll->widget(), state);
        keep(whole ? *scroll->widget() : static_cast<QWidget &>(stage.view), state);
    };
    stage.show();
    look(u"window"_s, false);
    stage.keyTest.start();
    stage.ai.reply(Notebook::explained("reluctant"));
    stage.press("advanced");
    stage.at("syncCode").setFocus();
    QTest::keyClicks(&stage.at("syncCode"), u"https://x"_s);
    stage.press("connectSync");
    stage.offers =
        StatusMenu::offers(StatusMenu::entries({.spellPracticeCount = 6, .journeyInstalled = true}));
    stage.view.refreshOffers();
    look(u"page"_s, true);
    stage.link();
    stage.press("toggleQr");
    stage.notebook.clock.advance(std::chrono::seconds{1});
    look(u"linked"_s, true);

    ApplicationChooser chooser(stage.theme, stage.installed.applications);
    chooser.show();
    SettingsStage::settle();
    keep(chooser, u"chooser"_s);
}

INSTANTIATE_TEST_SUITE_P(Looks, SettingsLook,
    testing::Values(
        Look{Theme::Scheme::light, 1}, Look{Theme::Scheme::dark, 1}, Look{Theme::Scheme::light, 2}));

} // namespace nimbrelle
