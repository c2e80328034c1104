#include "settings/ExcludedApplications.h"

#include "frame/ConfigStore.h"

namespace nimbrelle {

namespace {

/// Each program once: it may have several entries, such as "Editor" and "Editor (new window)", and the
/// shortest is its name.
QString nameOf(const QString &bundleID, const QList<InstalledApplication> &known)
{
    QStringList programs, names;
    for (const InstalledApplication &application : known) {
        if (application.bundleID != bundleID)
            continue;
        const QString program = application.program.isEmpty() ? application.name : application.program;
        const qsizetype at = programs.indexOf(program);
        if (at < 0) {
            programs.append(program);
            names.append(application.name);
        } else if (application.name.size() < names[at].size()) {
            names[at] = application.name;
        }
    }
    names.removeDuplicates();
    return names.isEmpty() ? bundleID : names.join(u'、');
}

} // namespace

ExcludedApplications::ExcludedApplications(ConfigStore &config, const InstalledApplications &installed)
    : m_config(config), m_installed(installed)
{
}

QList<ExcludedApplications::Row> ExcludedApplications::rows() const
{
    const auto known = m_known.value_or(QList<InstalledApplication>());
    QList<Row> rows;
    for (const QString &bundleID : m_config.config().excludedBundleIDs) {
        rows.append({.bundleID = bundleID, .name = nameOf(bundleID, known)});
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
