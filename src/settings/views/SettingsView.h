#pragma once

#include "frame/Recheck.h"
#include "settings/views/SettingsParts.h"

#include <QWidget>

class QScrollArea;

namespace nimbrelle {

class ApplicationSection;
class OfferRow;
class PermissionSection;
class ReadText;
class StartSection;

/// The content of the settings window: one page that scrolls. Every change takes effect at once.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    explicit SettingsView(const SettingsParts &parts, QWidget *parent = nullptr);

    /// Shows the ways to the program's windows, where there are any on offer.
    void refreshOffers();

signals:
    void wordsRequested();
    void addWordRequested();
    void offerChosen(const nimbrelle::MenuEntry &entry);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void rebuild();
    QWidget *makePage();
    QWidget *makeNotebookSection();
    void look();
    void showFileNotes();

    const SettingsParts m_parts;
    QScrollArea *m_scroll;
    PermissionSection *m_permissions = nullptr;
    StartSection *m_start = nullptr;
    ApplicationSection *m_exclusions = nullptr;
    ApplicationSection *m_noCopy = nullptr;
    QWidget *m_sync;
    OfferRow *m_offers = nullptr;
    ReadText *m_keptFiles = nullptr;
    ReadText *m_unwritten = nullptr;
    QList<QWidget *> m_sections; ///< from the top
    bool m_isAdvancedOpen = false;
    Recheck m_recheck;
};

} // namespace nimbrelle
