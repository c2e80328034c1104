#include "shell/AppDelegate.h"

#include "card/AskSession.h"
#include "coach/CoachSession.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "notebook/WordStore.h"
#include "platform/Permissions.h"
#include "platform/Speaker.h"
#include "review/ReviewSession.h"
#include "screen/PermissionModel.h"
#include "shell/AppWindows.h"

#include <QFileInfo>
#include <QPointer>

namespace nimbrelle {

namespace {

constexpr std::chrono::milliseconds permissionPeriod{1500};

AppDelegate *sharedDelegate = nullptr;

} // namespace

AppDelegate::AppDelegate(World world, QObject *parent)
    : QObject(parent)
    , m_world(std::move(world))
    , m_menuBarWord(m_world.words, m_world.config, m_world.log, m_world.clock)
    , m_archive(m_world.paths)
{
    connect(&m_menuBarWord, &MenuBarWord::changed, this, &AppDelegate::updateStatusTitle);
    connect(&m_archive, &GrowthArchive::updated, this, &AppDelegate::openArchive);
    connect(&m_world.statusItem, &StatusItem::chosen, this, &AppDelegate::choose);
}

AppDelegate::~AppDelegate()
{
    if (sharedDelegate == this)
        sharedDelegate = nullptr;
    m_permissionTimer.request_stop();
}

AppDelegate *AppDelegate::shared()
{
    return sharedDelegate;
}

void AppDelegate::applicationDidFinishLaunching()
{
    sharedDelegate = this;
    m_world.statusItem.show([self = QPointer(this)](StatusItem::MenuUse use) {
        if (!self)
            return QList<MenuEntry>();
        return use == StatusItem::MenuUse::opening ? self->menuNeedsUpdate() : self->menuEntries();
    });
    m_menuBarWord.start();
    m_world.startSync();
    const bool isGranted = isAccessible();
    if (isGranted)
        m_world.startTrigger();
    else
        waitForAccessibility(m_permissionTimer.get_token());
    // A new user lands in the settings.
    if (!isGranted || m_world.config.config().apiKey.isEmpty())
        showSettings();
}

void AppDelegate::applicationShouldHandleReopen()
{
    showSettings();
}

QCoro::Task<> AppDelegate::waitForAccessibility(std::stop_token stop)
{
    do {
        co_await m_world.clock.sleep(permissionPeriod, stop);
        if (stop.stop_requested())
            co_return;
    } while (!isAccessible());
    m_world.startTrigger();
}

void AppDelegate::showSettings()
{
    m_world.windows.showSettings();
}

void AppDelegate::showWords()
{
    m_world.windows.showWords();
}

void AppDelegate::showAddWord()
{
    m_world.windows.showAddWord();
}

void AppDelegate::showReview()
{
    m_world.review.start(0);
    m_world.windows.showReview();
}

void AppDelegate::showSpelling()
{
    m_world.review.startSpelling();
    m_world.windows.showSpelling();
}

void AppDelegate::showCoach()
{
    m_world.coach().open();
    m_world.windows.showCoach();
}

void AppDelegate::showAsk(std::optional<QuickQuestion> question, const AskContext &context)
{
    m_world.ask.start(context, question);
    m_world.windows.showAsk();
}

void AppDelegate::showJourney()
{
    m_archive.update();
}

void AppDelegate::openArchive()
{
    if (QFileInfo::exists(m_archive.report()))
        m_world.windows.openFile(m_archive.report());
    else
        m_world.windows.showAlert(
            QStringLiteral("成长档案还没装好"), QStringLiteral("重新运行一次 build.sh 就会装好。"));
}

void AppDelegate::toggleAutoPopup()
{
    toggle(&AppConfig::autoPopupOnSelect);
}

void AppDelegate::toggleDwell()
{
    toggle(&AppConfig::dwellLookup);
}

void AppDelegate::toggleHover()
{
    toggle(&AppConfig::optionHoverOCR);
}

void AppDelegate::toggleRegion()
{
    toggle(&AppConfig::optionRegionTranslate);
}

void AppDelegate::toggleMenuBarWord()
{
    toggle(&AppConfig::menuBarWord);
    m_menuBarWord.next();
}

void AppDelegate::toggleExcluded(const QString &bundleID)
{
    AppConfig changed = m_world.config.config();
    if (changed.excludedBundleIDs.removeAll(bundleID) == 0)
        changed.excludedBundleIDs.append(bundleID);
    m_world.config.setConfig(changed);
}

void AppDelegate::toggleLaunchAtLogin()
{
    m_world.permissionModel.setLaunchAtLogin(!m_world.permissionModel.launchAtLogin());
}

void AppDelegate::quit()
{
    m_world.quitApplication();
}

void AppDelegate::speakMenuBarWord()
{
    if (const auto word = m_menuBarWord.entry())
        m_world.speaker.speak(word->headword);
}

void AppDelegate::nextMenuBarWord()
{
    m_menuBarWord.next();
}

void AppDelegate::updateStatusTitle()
{
    const auto word = m_menuBarWord.entry();
    const StatusMenu::ToolTip toolTip = StatusMenu::toolTip(word);
    m_world.statusItem.setToolTip(toolTip.title, toolTip.text);
    m_world.statusItem.setTitle(StatusMenu::title(word));
}

QList<MenuEntry> AppDelegate::menuNeedsUpdate()
{
    m_menuBarWord.glance();
    return menuEntries();
}

QList<MenuEntry> AppDelegate::menuEntries() const
{
    return StatusMenu::entries({
        .word = m_menuBarWord.entry(),
        .config = m_world.config.config(),
        .dueCount = m_world.words.sessionCount(m_world.clock.now()),
        .learningCount = m_world.words.learningCount(),
        .spellPracticeCount = m_world.words.spellPracticeCount(),
        .wordCount = m_world.words.entries().size(),
        .journeyInstalled = journeyInstalled(),
        .isJourneyUpdating = m_archive.isUpdating(),
        .isAccessible = isAccessible(),
        .launchesAtLogin = m_world.permissionModel.launchAtLogin(),
        .front = m_world.front.current(),
        .ownBundleID = m_world.front.ownBundleID(),
    });
}

void AppDelegate::choose(const MenuEntry &entry)
{
    using Action = StatusMenu::Action;
    switch (StatusMenu::actionOf(entry)) {
    case Action::none:
        return;
    case Action::speakMenuBarWord:
        return speakMenuBarWord();
    case Action::nextMenuBarWord:
        return nextMenuBarWord();
    case Action::showReview:
        return showReview();
    case Action::showWords:
        return showWords();
    case Action::showSpelling:
        return showSpelling();
    case Action::showCoach:
        return showCoach();
    case Action::showAddWord:
        return showAddWord();
    case Action::showJourney:
        return showJourney();
    case Action::toggleAutoPopup:
        return toggleAutoPopup();
    case Action::toggleDwell:
        return toggleDwell();
    case Action::toggleHover:
        return toggleHover();
    case Action::toggleRegion:
        return toggleRegion();
    case Action::toggleMenuBarWord:
        return toggleMenuBarWord();
    case Action::toggleExcluded:
        return toggleExcluded(entry.payload);
    case Action::showSettings:
        return showSettings();
    case Action::toggleLaunchAtLogin:
        return toggleLaunchAtLogin();
    case Action::quit:
        return quit();
    }
}

void AppDelegate::toggle(bool AppConfig::*setting)
{
    AppConfig changed = m_world.config.config();
    changed.*setting = !(changed.*setting);
    m_world.config.setConfig(changed);
}

bool AppDelegate::isAccessible() const
{
    return m_world.permissions.state(Grant::accessibility).granted;
}

} // namespace nimbrelle
