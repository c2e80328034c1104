#include "main/Desktop.h"

#include "card/views/AskView.h"
#include "coach/views/CoachView.h"
#include "review/views/ReviewView.h"
#include "shell/views/AddWordView.h"
#include "shell/views/FollowDesktop.h"
#include "shell/views/SettingsView.h"
#include "shell/views/StatusPictures.h"
#include "shell/views/TrayIcon.h"
#include "shell/views/WordListView.h"
#include "sync/PinnedTransport.h"
#include "sync/views/CopySecret.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QProcess>

#include <syslog.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double menuSymbolSize = 16;

PermissionModel::Exits exits()
{
    return {[](const QString &line) { ::syslog(LOG_USER | LOG_NOTICE, "nimbrelle: %s", qPrintable(line)); },
        [](const QUrl &url) { QDesktopServices::openUrl(url); },
        [](const QString &program, const QStringList &arguments) {
            QProcess::startDetached(program, arguments);
        },
        [] { QCoreApplication::quit(); }};
}

StatusArt statusArt(const Theme &theme)
{
    return {StatusNotifierItem::installedIcon(), statusIcons(), [&theme](const QString &symbol) {
                return menuSymbol(
                    symbol, qCeil(menuSymbolSize * qApp->devicePixelRatio()), theme.colour(Tone::ink2));
            }};
}

} // namespace

Desktop::Desktop(Services &services)
    : m_services(services)
    , m_theme(Theme::desktopScale())
    , m_road(services, m_platform, m_theme)
    , m_review(services.words(), services.clock(), m_platform.speaker)
    , m_ask(services.clock(), services.config(), services.words(), services.newAI())
    , m_facts(services.words(), services.config(), services.log())
    , m_permissions(m_platform.permissions, m_platform.launchAtLogin, exits())
    , m_keyTest(services.config(), services.newAI())
    , m_excluded(services.config(), m_platform.installed)
    , m_connection(services.config(), services.sync(), services.clock(), &PinnedTransport::open, &copySecret)
    , m_addWord(services.config(), services.words(), services.newAI())
    , m_popup(m_theme)
    , m_statusItem(QDBusConnection::sessionBus(), statusArt(m_theme),
          {[this] { return std::make_unique<TrayIcon>(m_theme); },
              [this](const QList<MenuEntry> &entries, QPoint at) {
                  m_popup.popUp(entries, QRect(m_platform.screens.layout().toolkitPointOf(at), QSize(1, 1)));
              }})
    , m_windows(m_theme, windowContents(),
          [this](WId window) { m_platform.frontApplication.activate({.window = window}); })
    , m_delegate(delegateWorld())
{
    followDesktop(m_theme, m_platform.appearance);
    m_theme.applyToApplication();
    tie();
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
            m_services.paths(), m_services.clock(), m_services.config(),
            [this](Timestamp now) { return m_facts.build(now); }, m_services.newAI());
    return *m_coach;
}

DesktopWindows::Contents Desktop::windowContents()
{
    return {[this] { return makeSettings(); }, [this] { return makeWords(); },
        [this] { return new AddWordView(m_theme, m_addWord, m_platform.speaker); },
        [this] { return makeReview(); }, [this] { return makeCoach(); },
        [this] { return new AskView(m_theme, m_ask); }};
}

QWidget *Desktop::makeSettings()
{
    auto *view = new SettingsView({m_theme, m_services.config(), m_services.words(), m_permissions, m_keyTest,
        m_excluded, m_connection, m_services.sync(), m_services.clock(),
        [this] {
            return m_statusItem.isSeen() ? QList<MenuEntry>() : StatusMenu::offers(m_delegate.menuEntries());
        },
        m_services.paths().config});
    QObject::connect(view, &SettingsView::offerChosen, &m_statusItem, &StatusItem::chosen);
    QObject::connect(&m_statusItem, &StatusItem::seenChanged, view, &SettingsView::refreshOffers);
    QObject::connect(view, &SettingsView::wordsRequested, &m_delegate, &AppDelegate::showWords);
    QObject::connect(view, &SettingsView::addWordRequested, &m_delegate, &AppDelegate::showAddWord);
    return view;
}

QWidget *Desktop::makeWords()
{
    auto *view = new WordListView(
        {m_theme, m_services.clock(), m_services.config(), m_services.words(), m_platform.speaker});
    QObject::connect(view, &WordListView::addWordRequested, &m_delegate, &AppDelegate::showAddWord);
    return view;
}

QWidget *Desktop::makeReview()
{
    auto *view = new ReviewView(
        {m_theme, m_review, m_services.words(), m_services.config(), m_platform.speaker, m_services.clock()});
    QObject::connect(view, &ReviewView::closed, view, &QWidget::close);
    return view;
}

QWidget *Desktop::makeCoach()
{
    auto *view = new CoachView(m_theme, coach(), m_facts, m_services.clock());
    QObject::connect(view, &CoachView::reviewRequested, &m_delegate, &AppDelegate::showReview);
    return view;
}

AppDelegate::World Desktop::delegateWorld()
{
    return {m_services.clock(), m_services.paths(), m_services.config(), m_services.words(), m_services.log(),
        m_platform.permissions, m_permissions, m_platform.frontApplication, m_platform.speaker, m_statusItem,
        m_windows, m_review, m_ask, [this]() -> CoachSession & { return coach(); },
        [this] { m_services.sync().start(); }, [this] { m_road.startWatching(); },
        [] { QCoreApplication::quit(); }};
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
