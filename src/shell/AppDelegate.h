#pragma once

#include "card/AskContext.h"
#include "frame/Recheck.h"
#include "platform/StatusItem.h"
#include "shell/GrowthArchive.h"
#include "shell/MenuBarWord.h"
#include "shell/StatusMenu.h"

namespace nimbrelle {

class AppWindows;
class AskSession;
class CoachSession;
class DataWriter;
class FrontApplication;
class PermissionModel;
class Permissions;
class ReviewSession;
class Speaker;

/// The shell of the program: starts its parts in order, keeps the status item and its menu, and opens the
/// windows. Lives as long as the application. Main thread only.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// All that it works with; everything outlives it.
    struct Parts {
        Clock &clock;
        const AppPaths &paths;
        ConfigStore &config;
        WordStore &words;
        LearningLog &log;
        DataWriter &writer;
        const Permissions &permissions;
        PermissionModel &permissionModel;
        const FrontApplication &front;
        Speaker &speaker;
        StatusItem &statusItem;
        AppWindows &windows;
        ReviewSession &review;
        AskSession &ask;
        std::function<CoachSession &()> coach; ///< makes it at the first call
        std::function<void()> startSync;
        std::function<void()> startTrigger; ///< the watching of input, once it is granted
        std::function<void()> quitApplication;
    };

    explicit AppDelegate(Parts parts, QObject *parent = nullptr);
    ~AppDelegate() override;

    /// Null before the launch and after its end.
    static AppDelegate *shared();

    /// Call it once, when the event loop can run.
    void applicationDidFinishLaunching();
    /// The program was started again while it runs.
    void applicationShouldHandleReopen();

    void showSettings();
    void showWords();
    void showAddWord();
    void showReview();
    void showSpelling();
    void showCoach();
    void showAsk(std::optional<QuickQuestion> question, const AskContext &context);
    /// Has the growth archive written anew, then opens it; returns at once.
    void showJourney();

    void toggleAutoPopup();
    void toggleDwell();
    void toggleHover();
    void toggleRegion();
    void toggleMenuBarWord();
    void toggleExcluded(const QString &bundleID);
    void toggleLaunchAtLogin();
    void quit();

    void speakMenuBarWord();
    void nextMenuBarWord();
    void updateStatusTitle();

    /// The menu as it opens: the word in it counts as seen.
    QList<MenuEntry> menuNeedsUpdate();
    QList<MenuEntry> menuEntries() const;

private:
    void choose(const MenuEntry &entry);
    void toggle(bool AppConfig::*setting);
    bool isAccessible() const;
    bool journeyInstalled() const { return m_archive.isInstalled(); }
    void openArchive();
    void startTriggerOnceAccessible();

    const Parts m_parts;
    MenuBarWord m_menuBarWord;
    GrowthArchive m_archive;
    Recheck m_permissionPoll;
};

} // namespace nimbrelle
