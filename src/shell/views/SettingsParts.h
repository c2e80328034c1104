#pragma once

#include "frame/ConfigStore.h"

#include <QString>

namespace nimbrelle {

class Clock;
class ExcludedApplications;
class KeyTest;
class PermissionModel;
class SyncConnection;
class SyncService;
class Theme;
class WordStore;

/// What the settings are made with; all of it outlives them.
struct SettingsParts {
    const Theme &theme;
    ConfigStore &config;
    const WordStore &words;
    PermissionModel &permissions;
    KeyTest &keyTest;
    ExcludedApplications &excluded;
    SyncConnection &connection;
    const SyncService &sync;
    Clock &clock;
    QString configPath; ///< of the file that the settings are kept in

    template <class Change> void change(Change change) const
    {
        AppConfig changed = config.config();
        change(changed);
        config.setConfig(changed);
    }
};

} // namespace nimbrelle
