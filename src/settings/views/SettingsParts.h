#pragma once

#include "frame/ConfigStore.h"
#include "platform/StatusItem.h"

#include <QString>

#include <functional>

class QWidget;

namespace nimbrelle {

class Clock;
class DataWriter;
class ListedApplications;
class KeyTest;
class PermissionModel;
class Theme;
class WordStore;

/// What the settings are made with; all of it outlives them.
struct SettingsParts {
    const Theme &theme;
    ConfigStore &config;
    const WordStore &words;
    const DataWriter &writer;
    PermissionModel &permissions;
    KeyTest &keyTest;
    ListedApplications &applications;
    Clock &clock;
    /// Lines of the status menu for a desktop whose bar does not show it; else none.
    std::function<QList<MenuEntry>()> offers;
    /// The names of damaged data files that were kept, the oldest first.
    std::function<QStringList()> keptFiles;
    /// The group about syncing; the page takes it over.
    std::function<QWidget *()> makeSyncGroup;
    /// The group about taking the data along; made anew with the page.
    std::function<QWidget *()> makeDataGroup;
    QString configPath; ///< of the file that the settings are kept in

    template <class Change> void change(Change change) const
    {
        AppConfig changed = config.config();
        change(changed);
        config.setConfig(changed);
    }
};

} // namespace nimbrelle
