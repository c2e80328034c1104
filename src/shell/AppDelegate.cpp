#include "shell/AppDelegate.h"

#include "card/AskSession.h"
#include "coach/CoachSession.h"
#include "frame/ConfigStore.h"
#include "notebook/WordStore.h"
#include "platform/Permissions.h"
#include "platform/Speaker.h"
#include "review/ReviewSession.h"
#include "settings/PermissionModel.h"
#include "settings/UnwrittenText.h"
#include "shell/AppWindows.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds permissionPeriod{1500};

AppDelegate *sharedDelegate = nullptr;

} // namespace

AppDelegate::AppDelegate(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(std::move(parts))
    , m_menuBarWord(m_parts.words, m_parts.config, m_parts.log, m_parts.clock)
    , m_archive(m_parts.paths)
    , m_permissionPoll(m_parts.clock, permissionPeriod)
{
    connect(&m_menuBarWord, &MenuBarWord::changed, this, &AppDelegate::updateStatusTitle);
    connect(&m_archive, &GrowthArchive::updated, this, &AppDelegate::openArchive);
    connect(&m_parts.statusItem, &StatusItem::chosen, this, &AppDelegate::choose);
    connect(&m_permissionPoll, &Recheck::due, this, &AppDelegate::startTriggerOnceAccessible);
}

AppDelegate::~AppDelegate()
{
    if (sharedDelegate == this)
        sharedDelegate = nullptr;
}

AppDelegate *AppDelegate::shared()
{
    return sharedDelegate;
}

void AppDelegate::applicationDidFinishLaunching()
{
    sharedDelegate = this;
    m_parts.statusItem.show([self = QPointer(this)](StatusItem::MenuUse use) {
        if (!self)
            return QList<MenuEntry>();
        return use == StatusItem::MenuUse::opening ? self->menuNeedsUpdate() : self->menuEntries();
    });
    m_menuBarWord.start();
    m_parts.startSync();
    const bool isGranted = isAccessible();
    if (isGranted)
        m_parts.startTrigger();
    else
        m_permissionPoll.start();
    // A new user lands in the settings.
    if (!isGranted || m_parts.config.config().apiKey.isEmpty())
        showSettings();
}

void AppDelegate::applicationShouldHandleReopen()
{
    showSettings();
}

void AppDelegate::startTriggerOnceAccessible()
{
    if (!isAccessible())
        return;
    m_permissionPoll.stop();
    m_parts.startTrigger();
}

void AppDelegate::showSettings()
{
    m_parts.windows.show(WindowKind::settings);
}

void AppDelegate::showWords()
{
    m_parts.windows.show(WindowKind::words);
}

void AppDelegate::showAddWord()
{
    m_parts.windows.show(WindowKind::addWord);
}

void AppDelegate::showReview()
{
    m_parts.review.start(0);
    m_parts.windows.show(WindowKind::review);
}

void AppDelegate::showSpelling()
{
    m_parts.review.startSpelling();
    m_parts.windows.show(WindowKind::spelling);
}

void AppDelegate::showCoach()
{
    m_parts.coach().open();
    m_parts.windows.show(WindowKind::coach);
}

void AppDelegate::showAsk(std::optional<QuickQuestion> question, const AskContext &context)
{
    m_parts.ask.start(context, question);
    m_parts.windows.show(WindowKind::ask);
}

void AppDelegate::showJourney()
{
    m_archive.update();
}

void AppDelegate::openArchive()
{
    if (QFileInfo::exists(m_archive.report()))
        m_parts.windows.openFile(m_archive.report());
    else
        m_parts.windows.showAlert(u"成长档案还没装好"_s, u"重新运行一次 build.sh 就会装好。"_s);
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
    AppConfig changed = m_parts.config.config();
    if (changed.excludes(bundleID))
        changed.excludedBundleIDs.removeIf(
            [&](const QString &each) { return each.compare(bundleID, Qt::CaseInsensitive) == 0; });
    else
        changed.excludedBundleIDs.append(bundleID);
    m_parts.config.setConfig(changed);
}

void AppDelegate::toggleLaunchAtLogin()
{
    m_parts.permissionModel.setLaunchAtLogin(!m_parts.permissionModel.launchAtLogin());
}

void AppDelegate::quit()
{
    m_parts.quitApplication();
}

void AppDelegate::speakMenuBarWord()
{
    if (const auto word = m_menuBarWord.entry())
        m_parts.speaker.speak(word->headword);
}

void AppDelegate::nextMenuBarWord()
{
    m_menuBarWord.next();
}

void AppDelegate::updateStatusTitle()
{
    const auto word = m_menuBarWord.entry();
    const StatusMenu::ToolTip toolTip = StatusMenu::toolTip(word);
    m_parts.statusItem.setToolTip(toolTip.title, toolTip.text);
    m_parts.statusItem.setTitle(StatusMenu::title(word));
}

QList<MenuEntry> AppDelegate::menuNeedsUpdate()
{
    m_parts.writer.retry();
    m_menuBarWord.glance();
    return menuEntries();
}

QList<MenuEntry> AppDelegate::menuEntries() const
{
    const Rounds::Rehearsal round = m_parts.words.rehearseSession(m_parts.clock.now());
    return StatusMenu::entries({
        .unwritten = UnwrittenText::line(m_parts.writer.unwritten(), QDir::homePath()),
        .word = m_menuBarWord.entry(),
        .config = m_parts.config.config(),
        .dueCount = round.questions,
        .learningCount = round.learning,
        .spellPracticeCount = m_parts.words.spellPracticeCount(),
        .wordCount = m_parts.words.entries().size(),
        .journeyInstalled = journeyInstalled(),
        .isJourneyUpdating = m_archive.isUpdating(),
        .isAccessible = isAccessible(),
        .launchesAtLogin = m_parts.permissionModel.launchAtLogin(),
        .front = m_parts.front.current(),
        .ownBundleID = m_parts.front.ownBundleID(),
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
    AppConfig changed = m_parts.config.config();
    changed.*setting = !(changed.*setting);
    m_parts.config.setConfig(changed);
}

bool AppDelegate::isAccessible() const
{
    return m_parts.permissions.state(Grant::accessibility).granted;
}

} // namespace nimbrelle
