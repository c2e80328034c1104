#include "settings/ExcludedApplications.h"

#include "frame/ConfigStore.h"

namespace nimbrelle {

ExcludedApplications::ExcludedApplications(ConfigStore &config, const InstalledApplications &installed)
    : m_config(config), m_installed(installed)
{
}

QList<ExcludedApplications::Row> ExcludedApplications::rows() const
{
    const auto known = m_known.value_or(QList<InstalledApplication>());
    QList<Row> rows;
    for (const QString &bundleID : m_config.config().excludedBundleIDs) {
        QStringList names;
        for (const InstalledApplication &application : known)
            if (application.bundleID == bundleID && !names.contains(application.name))
                names.append(application.name);
        rows.append({.bundleID = bundleID, .name = names.isEmpty() ? bundleID : names.join(u'、')});
    }
    return rows;
}

QList<InstalledApplication> ExcludedApplications::candidates() const
{
    QList<InstalledApplication> left = m_known.value_or(QList<InstalledApplication>());
    left.removeIf([&](const InstalledApplication &application) {
        return m_config.config().excludedBundleIDs.contains(application.bundleID);
    });
    return left;
}

void ExcludedApplications::exclude(const QString &bundleID)
{
    AppConfig config = m_config.config();
    if (bundleID.isEmpty() || config.excludedBundleIDs.contains(bundleID))
        return;
    config.excludedBundleIDs.append(bundleID);
    m_config.setConfig(config);
}

void ExcludedApplications::remove(const QString &bundleID)
{
    AppConfig config = m_config.config();
    config.excludedBundleIDs.removeAll(bundleID);
    m_config.setConfig(config);
}

} // namespace nimbrelle
