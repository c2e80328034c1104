#pragma once

#include "settings/ListedApplications.h"
#include "settings/PermissionModel.h"
#include "settings/views/SettingsParts.h"
#include "widgets/Form.h"

/// The parts of the settings, from top to bottom. Each keeps itself up to date with what it shows.
namespace nimbrelle {

class Switch;

/// The ways to the program's other windows, where there is no bar to have them; looked at again by refresh().
class OfferRow : public QWidget {
    Q_OBJECT

public:
    explicit OfferRow(const SettingsParts &parts);

    void refresh();

signals:
    void chosen(const nimbrelle::MenuEntry &entry);

private:
    void rebuild();

    const SettingsParts &m_parts;
    QList<MenuEntry> m_offers;
};

/// The grants; looked at again by refresh().
class PermissionSection : public QWidget {
    Q_OBJECT

public:
    explicit PermissionSection(const SettingsParts &parts);

    void refresh();

private:
    void rebuild();
    FormRow *makeRow(int index, bool isFirstMissing) const;
    FormRow *makeRelaunchRow() const;

    const SettingsParts &m_parts;
    FormGroup *m_group;
    QList<PermissionRow> m_rows;
};

/// `isAdvancedOpen` is kept by the caller, and changed by the user.
QWidget *makeKeySection(const SettingsParts &parts, bool &isAdvancedOpen);
QWidget *makeLookupSection(const SettingsParts &parts);
QWidget *makeStudySection(const SettingsParts &parts);

/// Launch at login, which others can switch too; looked at again by refresh().
class StartSection : public QWidget {
    Q_OBJECT

public:
    explicit StartSection(const SettingsParts &parts);

    void refresh();

private:
    const SettingsParts &m_parts;
    Switch *m_switch;
};

/// A list of programs, to which others are added and from which any can be removed.
class ApplicationSection : public QWidget {
    Q_OBJECT

public:
    struct Look {
        ListedApplications::List list;
        QString title;
        QString note; ///< below the rows; may be empty
        QString name; ///< of its controls
    };
    /// Shows identifiers where the installed programs are not known yet.
    ApplicationSection(const SettingsParts &parts, const Look &look);

    /// Looks for the programs' names, if that has not been done.
    void findNames();

private:
    void rebuild();
    void rebuildIfChanged();
    void choose();
    FormRow *makeAddRow();

    const SettingsParts &m_parts;
    const Look m_look;
    FormGroup *m_group;
    QList<ListedApplications::Row> m_shown;
};

ApplicationSection *makeExclusionSection(const SettingsParts &parts);
ApplicationSection *makeNoCopySection(const SettingsParts &parts);

/// A row with a switch that is bound to a setting.
FormRow *makeSwitchRow(
    const SettingsParts &parts, const QString &name, const QString &label, bool AppConfig::*value);

} // namespace nimbrelle
