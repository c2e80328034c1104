#include "main/Desktop.h"

#include "card/views/AskView.h"
#include "coach/views/CoachView.h"
#include "export/views/DataSection.h"
#include "review/views/ReviewView.h"
#include "settings/views/SettingsView.h"
#include "shell/views/FollowDesktop.h"
#include "shell/views/GrowthRow.h"
#include "shell/views/StatusPictures.h"
#include "shell/views/TrayIcon.h"
#include "sync/PinnedTransport.h"
#include "sync/views/CopySecret.h"
#include "sync/views/SyncSection.h"
#include "wordbook/views/AddWordView.h"
#include "wordbook/views/WordListView.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QProcess>

#include <syslog.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double menuSymbolSize = 16;

PermissionModel::System operatingSystem()
{
    return {
        .systemLog =
            [](const QString &line) { ::syslog(LOG_USER | LOG_NOTICE, "nimbrelle: %s", qPrintable(line)); },
        .openUrl = [](const QUrl &url) { QDesktopServices::openUrl(url); },
        .startDetached = [](const QString &program,
                             const QStringList &arguments) { QProcess::startDetached(program, arguments); },
        .quit = [] { QCoreApplication::quit(); },
    };
}

} // namespace

Desktop::Desktop(Services &services, const Platform &platform)
    : m_services(services)
    , m_platform(platform)
    , m_theme(Theme::desktopScale())
    , m_road(services, m_platform, m_theme)
    , m_review(services.words(), services.clock(), m_platform.speaker)
    , m_ask(services.clock(), services.config(), services.words(), services.newAI())
    , m_facts(services.words(), services.config(), services.log())
    , m_permissions(m_platform.permissions, m_platform.launchAtLogin, operatingSystem())
    , m_keyTest(services.config(), services.newAI())
    , m_applications(services.config(), m_platform.installed)
    , m_connection(services.config(), services.sync(), services.clock(), &PinnedTransport::open, &copySecret)
    , m_addWord(services.config(), services.words(), services.newAI())
    , m_exchange({.paths = services.paths(),
          .config = services.config(),
          .words = services.words(),
          .coach = services.coachHistory(),
          .wordImport = services.wordImport(),
          .clock = services.clock(),
          .background = services.background(),
          .backups = services.backups()})
    , m_growthGenerator(services.paths(), QCoreApplication::applicationFilePath(), services.clock())
    , m_popup(m_theme)
    , m_statusItem(QDBusConnection::sessionBus(), statusArt(), statusViews())
    , m_windows(m_theme, windowTable(),
          [this](WId window) { m_platform.frontApplication.activate({.window = window}); })
    , m_delegate(delegateParts())
{
    followDesktop(m_theme, m_platform.appearance);
    m_theme.applyToApplication();
    tie();
    services.wordImport().start();
}

Desktop::~Desktop()
{
    if (m_coach)
        m_coach->stop();
}

CoachSession &Desktop::coach()
{
    if (!m_coach)
        m_coach = std::make_unique<CoachSession>(
            m_services.coachHistory(), m_services.clock(), m_services.config(),
            [this](Timestamp now) { return m_facts.build(now); }, m_services.newAI());
    return *m_coach;
}

StatusArt Desktop::statusArt() const
{
    return {
        .iconName = StatusNotifierItem::installedIcon(),
        .icons = statusIcons(),
        .symbol =
            [this](const QString &symbol) {
                return menuSymbol(
                    symbol, qCeil(menuSymbolSize * qApp->devicePixelRatio()), m_theme.colour(Tone::ink2));
            },
    };
}

LinuxStatusItem::Views Desktop::statusViews()
{
    return {
        .makeTray = [this] { return std::make_unique<TrayIcon>(m_theme); },
        .popUp =
            [this](const QList<MenuEntry> &entries, QPoint at) {
                m_popup.popUp(entries, QRect(m_platform.windowSystem.toolkitPointOf(at), QSize(1, 1)));
            },
    };
}

/// A new window is a row here.
std::vector<WindowRow> Desktop::windowTable()
{
    return {
        {.kind = WindowKind::settings,
            .name = u"settingsWindow"_s,
            .title = u"Nimbrelle 设置"_s,
            .size = {520, 560},
            .make = [this] { return makeSettings(); }},
        {.kind = WindowKind::words,
            .name = u"wordsWindow"_s,
            .title = u"生词本"_s,
            .size = {760, 520},
            .make = [this] { return makeWords(); }},
        {.kind = WindowKind::addWord,
            .name = u"addWordWindow"_s,
            .title = u"查词"_s,
            .size = {460, 220},
            .make = [this] { return new AddWordView(m_theme, m_addWord, m_platform.speaker); }},
        {.kind = WindowKind::review, // it shares the one session with the next
            .name = u"reviewWindow"_s,
            .title = u"复习"_s,
            .size = {500, 480},
            .make = [this] { return makeReview(); },
            .replaces = WindowKind::spelling},
        {.kind = WindowKind::spelling,
            .name = u"spellingWindow"_s,
            .title = u"拼写练习"_s,
            .size = {500, 480},
            .make = [this] { return makeReview(); },
            .replaces = WindowKind::review},
        {.kind = WindowKind::coach,
            .name = u"coachWindow"_s,
            .title = u"AI 教练"_s,
            .size = {500, 680},
            .make = [this] { return makeCoach(); }},
        {.kind = WindowKind::ask,
            .name = u"askWindow"_s,
            .title = u"问 AI"_s,
            .size = {460, 600},
            .make = [this] { return new AskView(m_theme, m_ask); }},
    };
}

QWidget *Desktop::makeSettings()
{
    auto *view = new SettingsView({
        .theme = m_theme,
        .config = m_services.config(),
        .words = m_services.words(),
        .writer = DataWriter::shared(),
        .permissions = m_permissions,
        .keyTest = m_keyTest,
        .applications = m_applications,
        .clock = m_services.clock(),
        .offers =
            [this] {
                return m_statusItem.isSeen() ? QList<MenuEntry>()
                                             : StatusMenu::offers(m_delegate.menuEntries());
            },
        .keptFiles = [this] { return DamagedFiles::keptIn(m_services.paths().supportDir); },
        .makeSyncGroup = [this] { return makeSyncGroup(); },
        .makeDataGroup = [this] { return makeDataGroup(); },
        .configPath = m_services.paths().config,
    });
    QObject::connect(view, &SettingsView::offerChosen, &m_statusItem, &StatusItem::chosen);
    QObject::connect(&m_statusItem, &StatusItem::seenChanged, view, &SettingsView::refreshOffers);
    QObject::connect(view, &SettingsView::wordsRequested, &m_delegate, &AppDelegate::showWords);
    QObject::connect(view, &SettingsView::addWordRequested, &m_delegate, &AppDelegate::showAddWord);
    return view;
}

QWidget *Desktop::makeSyncGroup()
{
    return new SyncSection({.theme = m_theme,
        .config = m_services.config(),
        .connection = m_connection,
        .service = m_services.sync(),
        .clock = m_services.clock()});
}

QWidget *Desktop::makeDataGroup()
{
    return new DataSection(
        {.theme = m_theme, .exchange = m_exchange, .wordImport = m_services.wordImport(), .moreRows = [this] {
             return QList<FormRow *>{new GrowthRow(m_theme, m_growthGenerator)};
         }});
}

QWidget *Desktop::makeWords()
{
    auto *view = new WordListView({.theme = m_theme,
        .clock = m_services.clock(),
        .config = m_services.config(),
        .words = m_services.words(),
        .speaker = m_platform.speaker});
    QObject::connect(view, &WordListView::addWordRequested, &m_delegate, &AppDelegate::showAddWord);
    return view;
}

QWidget *Desktop::makeReview()
{
    auto *view = new ReviewView({.theme = m_theme,
        .session = m_review,
        .words = m_services.words(),
        .config = m_services.config(),
        .speaker = m_platform.speaker,
        .clock = m_services.clock()});
    QObject::connect(view, &ReviewView::closed, view, &QWidget::close);
    return view;
}

QWidget *Desktop::makeCoach()
{
    auto *view = new CoachView(m_theme, coach(), m_facts, m_services.clock());
    QObject::connect(view, &CoachView::reviewRequested, &m_delegate, &AppDelegate::showReview);
    return view;
}

AppDelegate::Parts Desktop::delegateParts()
{
    return {
        .clock = m_services.clock(),
        .paths = m_services.paths(),
        .config = m_services.config(),
        .words = m_services.words(),
        .log = m_services.log(),
        .writer = DataWriter::shared(),
        .permissions = m_platform.permissions,
        .permissionModel = m_permissions,
        .front = m_platform.frontApplication,
        .speaker = m_platform.speaker,
        .statusItem = m_statusItem,
        .windows = m_windows,
        .review = m_review,
        .ask = m_ask,
        .coach = [this]() -> CoachSession & { return coach(); },
        .startSync = [this] { m_services.sync().start(); },
        .startTrigger = [this] { m_road.startWatching(); },
        .quitApplication = [] { QCoreApplication::quit(); },
    };
}

void Desktop::tie()
{
    QObject::connect(
        &m_road.card(), &CardController::settingsRequested, &m_delegate, &AppDelegate::showSettings);
    QObject::connect(&m_road.card(), &CardController::askRequested, &m_delegate,
        [this](const AskContext &context, std::optional<QuickQuestion> question) {
            m_delegate.showAsk(question, context);
        });
    QObject::connect(&m_popup, &StatusPopup::chosen, &m_statusItem, &StatusItem::chosen);
}

} // namespace nimbrelle
