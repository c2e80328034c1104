#pragma once

#include "frame/Recheck.h"
#include "shell/views/SettingsParts.h"

#include <QWidget>

class QScrollArea;

namespace nimbrelle {

class PermissionSection;
class StartSection;
class SyncSection;

/// The content of the settings window: one page that scrolls. Every change takes effect at once.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    explicit SettingsView(const SettingsParts &parts, QWidget *parent = nullptr);

    /// The ways to the program's windows, for a desktop that shows no status item.
    void setOffersWindows(bool offers);

signals:
    void reviewRequested();
    void wordsRequested();
    void addWordRequested();
    void coachRequested();

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void rebuild();
    QWidget *makePage();
    QWidget *makeOffers();
    QWidget *makeNotebookSection();
    void look();

    const SettingsParts m_parts;
    QScrollArea *m_scroll;
    PermissionSection *m_permissions = nullptr;
    StartSection *m_start = nullptr;
    SyncSection *m_sync;
    QWidget *m_offers = nullptr;
    bool m_offersWindows = false;
    bool m_isAdvancedOpen = false;
    Recheck m_recheck;
};

} // namespace nimbrelle
