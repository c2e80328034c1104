#pragma once

#include "frame/AppConfig.h"
#include "frame/DamagedFiles.h"

#include <QObject>

namespace nimbrelle {

class AppPaths;
class Clock;

/// The owner of the settings and of config.json, which only its owner can read (mode 0600). Main thread only.
class ConfigStore : public QObject {
    Q_OBJECT

public:
    /// Reads the file, which is closed to others if it was not; a missing or broken one gives the defaults.
    /// Nothing is written before the first change.
    ConfigStore(const AppPaths &paths, const Clock &clock, DataWriter &writer = DataWriter::shared());
    static ConfigStore &shared();

    const AppConfig &config() const { return m_config; }

    /// Takes effect and is saved at once. A change of a study setting stamps studySettingsAt, at least one
    /// second later than the stamp before, and emits studySettingsChanged. An equal record does nothing.
    void setConfig(const AppConfig &config);

    /// Takes over settings from a merge with their own stamp; studySettingsChanged is not emitted.
    void applySync(const StudySettings &settings);
    bool applyingSync() const { return m_applyingSync; }

    void save();

signals:
    void configChanged();
    void studySettingsChanged(); ///< by the user and not by a merge, so that it is to be synced

private:
    QString stampAfter(const QString &earlier) const;

    const QString m_path;
    const Clock &m_clock;
    DamagedFiles m_damaged;
    AppConfig m_config;
    bool m_applyingSync = false;
};

} // namespace nimbrelle
