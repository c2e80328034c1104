#pragma once

#include "export/DataExchange.h"
#include "export/WordImport.h"
#include "export/views/DataSection.h"
#include "settings/KeyTest.h"
#include "settings/ListedApplications.h"
#include "settings/PermissionModel.h"
#include "settings/views/SettingsView.h"
#include "support/FakeAIClient.h"
#include "support/FakeBackground.h"
#include "support/FakeDesktop.h"
#include "support/Notebook.h"
#include "support/ViewStage.h"
#include "sync/FakeNetwork.h"
#include "sync/SyncConnection.h"
#include "sync/SyncService.h"
#include "sync/views/CopySecret.h"
#include "sync/views/SyncSection.h"

namespace nimbrelle {

/// The settings with everything below them, on a desktop that is not there; the user's part is played by the
/// names of what there is to see and to press.
struct SettingsStage : ViewStage {
    explicit SettingsStage(double scale = 1) : theme(scale)
    {
        use(view);
        theme.applyToApplication();
        notebook.configure([](AppConfig &config) {
            config.excludedBundleIDs = QStringList{QStringLiteral("files"), QStringLiteral("gone")};
        });
        view.resize(theme.points(520), theme.points(560));
    }

    void show()
    {
        view.show();
        settle();
    }
    void link()
    {
        notebook.configure([](AppConfig &config) {
            config.syncServer = QStringLiteral("https://home.example:8443");
            config.syncToken = QStringLiteral("uPt7cX3kQnA9sD1f");
            config.syncPin = QString(64, u'a');
        });
        settle();
    }

    const AppConfig &config() const { return notebook.config.config(); }

    static FakeInstalledApplications someApplications()
    {
        FakeInstalledApplications some;
        some.applications = {{QStringLiteral("files"), QStringLiteral("Thunar 文件管理器"), {}},
            {QStringLiteral("FeatherPad"), QStringLiteral("FeatherPad"), {}},
            {QStringLiteral("Mousepad"), QStringLiteral("Mousepad"), {}},
            {QStringLiteral("XTerm"), QStringLiteral("XTerm"), {}}};
        return some;
    }

    Notebook notebook;
    FakeAI ai;
    FakePermissions permissions;
    FakeLaunchAtLogin launch;
    FakeInstalledApplications installed = someApplications();
    FakeNetwork network;
    QStringList copied, started, logged;
    Theme theme;
    PermissionModel permissionModel{permissions, launch,
        {.systemLog = [this](const QString &line) { logged.append(line); },
            .openUrl = [](const QUrl &) {},
            .startDetached = [this](const QString &program, const QStringList &) { started.append(program); },
            .quit = [] {}}};
    KeyTest keyTest{notebook.config, ai.factory()};
    ListedApplications applications{notebook.config, installed};
    SyncService sync{notebook.store, notebook.config, notebook.paths, notebook.clock, network.connect()};
    SyncConnection connection{
        notebook.config, sync, notebook.clock, network.connect(), [this](const QString &text) {
            copied.append(text);
            copySecret(text);
        }};
    CoachHistory coach{notebook.paths, notebook.clock};
    WordImport wordImport{notebook.store, notebook.config, notebook.paths, notebook.clock, ai.factory()};
    FakeBackground background;
    LocalBackups backups{notebook.paths, notebook.clock, background};
    DataExchange exchange{{.paths = notebook.paths,
        .config = notebook.config,
        .words = notebook.store,
        .coach = coach,
        .wordImport = wordImport,
        .clock = notebook.clock,
        .background = background,
        .backups = backups}};
    QList<MenuEntry> offers;
    DataWriter writer;
    SettingsView view{{
        .theme = theme,
        .config = notebook.config,
        .words = notebook.store,
        .writer = writer,
        .permissions = permissionModel,
        .keyTest = keyTest,
        .applications = applications,
        .clock = notebook.clock,
        .offers = [this] { return offers; },
        .keptFiles = [this] { return DamagedFiles::keptIn(notebook.paths.supportDir); },
        .makeSyncGroup =
            [this] {
                return new SyncSection({.theme = theme,
                    .config = notebook.config,
                    .connection = connection,
                    .service = sync,
                    .clock = notebook.clock});
            },
        .makeDataGroup =
            [this] {
                return new DataSection(
                    {.theme = theme, .exchange = exchange, .wordImport = wordImport, .moreRows = {}});
            },
        .configPath = QStringLiteral("/home/li/.local/share/Nimbrelle/config.json"),
    }};
};

} // namespace nimbrelle
