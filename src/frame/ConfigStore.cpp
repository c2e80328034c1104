#include "frame/ConfigStore.h"

#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/RecordFile.h"

#include <QScopedValueRollback>

namespace nimbrelle {

namespace {

/// A copy put back, or another program, may have left it readable for others.
AppConfig readPrivately(const QString &path, DamagedFiles &damaged)
{
    restrictToOwner(path);
    return readRecordFile<AppConfig>(path, damaged).value_or(AppConfig{});
}

} // namespace

ConfigStore::ConfigStore(const AppPaths &paths, const Clock &clock, DataWriter &writer)
    : m_path(paths.config)
    , m_clock(clock)
    , m_damaged(clock, writer)
    , m_config(readPrivately(paths.config, m_damaged))
{
}

ConfigStore &ConfigStore::shared()
{
    static ConfigStore store(AppPaths::shared(), SystemClock::shared());
    return store;
}

void ConfigStore::setConfig(const AppConfig &config)
{
    if (config == m_config)
        return;
    const bool isStudyChange = !m_applyingSync && !config.hasStudySettingsOf(m_config);
    const QString earlierStamp = m_config.studySettingsAt;
    m_config = config;
    if (isStudyChange)
        m_config.studySettingsAt = stampAfter(earlierStamp);
    save();
    emit configChanged();
    if (isStudyChange)
        emit studySettingsChanged();
}

void ConfigStore::applySync(const StudySettings &settings)
{
    const QScopedValueRollback applying(m_applyingSync, true);
    AppConfig config = m_config;
    config.takeStudySettings(settings);
    setConfig(config);
}

void ConfigStore::save()
{
    writeRecordFile(m_path, m_config, m_damaged, FileMode::ownerOnly);
}

// Stamps are stored in whole seconds and merged by the later one, so two edits within a second must differ.
QString ConfigStore::stampAfter(const QString &earlier) const
{
    const auto last = timestampFromIso(earlier);
    const Timestamp floor = last ? *last + std::chrono::seconds{1} : distantPast;
    return isoText(std::max(floor, m_clock.now()));
}

} // namespace nimbrelle
