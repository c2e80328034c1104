#include "looks/Looks.h"
#include "settings/views/ApplicationChooser.h"
#include "settings/views/SettingsStage.h"
#include "shell/GrowthGenerator.h"
#include "shell/StatusMenu.h"
#include "shell/views/GrowthRow.h"

#include <QDir>
#include <QLayout>
#include <QScrollArea>

#include <cerrno>

namespace nimbrelle {

using namespace Qt::StringLiterals;

void showSettings(const Look &look, const Show &show)
{
    SettingsStage stage(look.scale);
    stage.theme.setScheme(look.scheme);
    stage.permissions.states[Grant::screenCapture] = {false,
        u"当前是 Wayland 会话，程序看不到其他窗口里的鼠标、按键和画面，划词、停留识别和框选都用不了。"
        "请在登录界面选择 X11（Xorg）会话。"_s};
    stage.notebook.configure([](AppConfig &config) {
        config.apiKey = u"sk-0123456789abcdef01234567"_s;
        config.regionKey = ModifierKey::option;
        config.baseURL = u"api.example.com/v1"_s;
    });
    stage.writer.report(stage.notebook.paths.words, {.error = ENOSPC});
    auto *scroll = stage.view.findChild<QScrollArea *>();
    const auto showWhole = [&](const char *state) {
        const QWidget &page = *scroll->widget();
        stage.settle();
        stage.view.resize(stage.view.width(), page.layout()->totalHeightForWidth(stage.view.width()));
        show(*scroll->widget(), state);
    };
    stage.show();
    show(stage.view, "window");
    stage.keyTest.start();
    stage.ai.reply(Notebook::explained("reluctant"));
    stage.press("advanced");
    stage.at("syncCode").setFocus();
    QTest::keyClicks(&stage.at("syncCode"), u"https://x"_s);
    stage.press("connectSync");
    stage.offers =
        StatusMenu::offers(StatusMenu::entries({.spellPracticeCount = 6, .journeyInstalled = true}));
    stage.view.refreshOffers();
    showWhole("page");
    stage.link();
    stage.press("toggleQr");
    stage.notebook.clock.advance(std::chrono::seconds{1});
    stage.notebook.save("reluctant");
    const QString backup = stage.notebook.directory.filePath(u"a/nimbrelle.zip"_s);
    QDir(stage.notebook.directory.path()).mkdir(u"a"_s);
    stage.exchange.exportTo(ExportKind::backup, backup);
    stage.backups.beforeSync();
    stage.backups.beforeImport({});
    stage.wordImport.add({u"deprecated"_s, u"karma"_s, u"rationale"_s});
    stage.ai.reply(LookupResult{.explanation = Notebook::explained("deprecated")});
    showWhole("linked");
    stage.notebook.fill({});
    stage.exchange.readBackup(backup);
    stage.wordImport.pause();
    showWhole("backup");
    stage.exchange.readBackup(u"/nowhere.zip"_s);
    stage.wordImport.cancel();
    showWhole("failed");

    ApplicationChooser chooser(stage.theme, stage.installed.applications);
    chooser.show();
    show(chooser, "chooser");

    const AppPaths beside(stage.notebook.directory.filePath(u"data"_s));
    const GrowthGenerator generator(beside, u"/usr/bin/nimbrelle"_s, stage.notebook.clock);
    GrowthRow growth(stage.theme, generator);
    ViewStage::show(growth, stage.theme, {472, 100});
    show(growth, "growth");
}

} // namespace nimbrelle
