#pragma once

#include "card/AskSession.h"
#include "coach/CoachFacts.h"
#include "coach/CoachSession.h"
#include "main/CardRoad.h"
#include "main/Services.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/LinuxStatusItem.h"
#include "review/ReviewSession.h"
#include "screen/PermissionModel.h"
#include "shell/AddWordModel.h"
#include "shell/AppDelegate.h"
#include "shell/ExcludedApplications.h"
#include "shell/KeyTest.h"
#include "shell/views/DesktopWindows.h"
#include "shell/views/StatusPopup.h"
#include "shell/views/Theme.h"
#include "sync/SyncConnection.h"

namespace nimbrelle {

/// The program as it runs in a session: the desktop's services, the sessions behind the windows, the windows
/// and the delegate that leads them, tied together. Made once the application object stands, and dies before
/// it.
class Desktop {
public:
    explicit Desktop(Services &services);
    /// Keeps what is there of an answer that still comes.
    ~Desktop();

    AppDelegate &delegate() { return m_delegate; }

private:
    DesktopWindows::Contents windowContents();
    QWidget *makeSettings();
    QWidget *makeWords();
    QWidget *makeReview();
    QWidget *makeCoach();
    AppDelegate::World delegateWorld();
    CoachSession &coach();
    void tie();

    Services &m_services;
    LinuxPlatform m_platform;
    Theme m_theme;
    CardRoad m_road;

    ReviewSession m_review;
    AskSession m_ask;
    CoachFacts m_facts;
    std::unique_ptr<CoachSession> m_coach;
    PermissionModel m_permissions;
    KeyTest m_keyTest;
    ExcludedApplications m_excluded;
    SyncConnection m_connection;
    AddWordModel m_addWord;

    StatusPopup m_popup;
    LinuxStatusItem m_statusItem;
    DesktopWindows m_windows;
    AppDelegate m_delegate;
};

} // namespace nimbrelle
