#include "settings/ListedApplications.h"

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

ListedApplications::ListedApplications(ConfigStore &config, const InstalledApplications &installed)
    : m_config(config), m_installed(installed)
{
}

QList<ListedApplications::Row> ListedApplications::rows(List list) const
{
    const auto known = m_known.value_or(QList<InstalledApplication>());
    QList<Row> rows;
    for (const QString &bundleID : m_config.config().*list) {
        rows.append({.bundleID = bundleID, .name = nameOf(bundleID, known)});
    }
    return rows;
}

QList<InstalledApplication> ListedApplications::candidates(List list) const
{
    QList<InstalledApplication> left = m_known.value_or(QList<InstalledApplication>());
    left.removeIf([&](const InstalledApplication &application) {
        return (m_config.config().*list).contains(application.bundleID);
    });
    return left;
}

void ListedApplications::add(List list, const QString &bundleID)
{
    AppConfig config = m_config.config();
    if (bundleID.isEmpty() || (config.*list).contains(bundleID))
        return;
    (config.*list).append(bundleID);
    m_config.setConfig(config);
}

void ListedApplications::remove(List list, const QString &bundleID)
{
    AppConfig config = m_config.config();
    (config.*list).removeAll(bundleID);
    m_config.setConfig(config);
}

} // namespace nimbrelle
