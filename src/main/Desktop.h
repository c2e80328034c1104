#pragma once

#include "card/AskSession.h"
#include "coach/CoachFacts.h"
#include "coach/CoachSession.h"
#include "export/DataExchange.h"
#include "main/CardRoad.h"
#include "main/Services.h"
#include "platform/Platform.h"
#include "platform/WindowSystem.h"
#include "platform/linux/bus/LinuxStatusItem.h"
#include "review/ReviewSession.h"
#include "settings/KeyTest.h"
#include "settings/ListedApplications.h"
#include "settings/PermissionModel.h"
#include "shell/AppDelegate.h"
#include "shell/GrowthGenerator.h"
#include "shell/views/DesktopWindows.h"
#include "shell/views/StatusPopup.h"
#include "sync/SyncConnection.h"
#include "widgets/Theme.h"
#include "wordbook/AddWordModel.h"

namespace nimbrelle {

/// The program as it runs in a session: the sessions behind the windows, the windows and the delegate that
/// leads them, tied together. Made once the application object stands, and dies before
/// it.
class Desktop {
public:
    Desktop(Services &services, const Platform &platform);
    /// Keeps what is there of an answer that still comes.
    ~Desktop();

    AppDelegate &delegate() { return m_delegate; }
    void perform(ShortcutAction action) { m_road.perform(action); }

private:
    std::vector<WindowRow> windowTable();
    StatusArt statusArt() const;
    LinuxStatusItem::Views statusViews();
    QWidget *makeSettings();
    QWidget *makeSyncGroup();
    QWidget *makeDataGroup();
    QWidget *makeWords();
    QWidget *makeReview();
    QWidget *makeCoach();
    AppDelegate::Parts delegateParts();
    CoachSession &coach();
    void tie();

    Services &m_services;
    const Platform m_platform;
    Theme m_theme;
    CardRoad m_road;

    ReviewSession m_review;
    AskSession m_ask;
    CoachFacts m_facts;
    std::unique_ptr<CoachSession> m_coach;
    PermissionModel m_permissions;
    KeyTest m_keyTest;
    ListedApplications m_applications;
    SyncConnection m_connection;
    AddWordModel m_addWord;
    DataExchange m_exchange;
    GrowthGenerator m_growthGenerator;

    StatusPopup m_popup;
    LinuxStatusItem m_statusItem;
    DesktopWindows m_windows;
    AppDelegate m_delegate;
};

} // namespace nimbrelle
