#pragma once

#include "frame/AppConfig.h"
#include "notebook/WordEntry.h"
#include "platform/FrontApplication.h"
#include "platform/StatusItem.h"

/// What the status item shows: its title, its tool tip and each line of its menu.
namespace nimbrelle::StatusMenu {

enum class Action {
    none,
    speakMenuBarWord,
    nextMenuBarWord,
    showReview,
    showWords,
    showSpelling,
    showCoach,
    showAddWord,
    showJourney,
    toggleAutoPopup,
    toggleDwell,
    toggleHover,
    toggleRegion,
    toggleMenuBarWord,
    toggleExcluded, ///< its payload is the application's identifier
    showSettings,
    toggleLaunchAtLogin,
    quit,
};

/// All that the menu depends on, as it is at the moment of opening.
struct State {
    QString unwritten; ///< what is told of data files that could not be written; else empty
    std::optional<WordEntry> word; ///< the one on show in the bar
    AppConfig config;
    qint64 dueCount = 0; ///< questions of a round begun now
    qint64 learningCount = 0;
    qint64 spellPracticeCount = 0;
    qint64 wordCount = 0;
    bool journeyInstalled = false;
    bool isJourneyUpdating = false;
    bool isAccessible = false;
    bool launchesAtLogin = false;
    std::optional<Application> front;
    std::optional<QString> ownBundleID;
};

QList<MenuEntry> entries(const State &state);
Action actionOf(const MenuEntry &entry);

/// Of a menu, the lines that the settings offer where no bar shows it: those to the program's other windows,
/// and the one that ends the program.
QList<MenuEntry> offers(const QList<MenuEntry> &menu);

/// Beside the icon.
QString title(const std::optional<WordEntry> &word);

struct ToolTip {
    QString title;
    QString text; ///< with markup

    bool operator==(const ToolTip &) const = default;
};
/// The word with its meaning and, where it has one, its best sentence with the word in bold.
ToolTip toolTip(const std::optional<WordEntry> &word);

} // namespace nimbrelle::StatusMenu
