#pragma once

#include "frame/AppConfig.h"
#include "platform/InstalledApplications.h"

namespace nimbrelle {

class ConfigStore;

/// Lists of programs in the settings, such as those in which nothing pops up. Main thread only.
class ListedApplications {
public:
    using List = QStringList AppConfig::*;

    ListedApplications(ConfigStore &config, const InstalledApplications &installed);

    struct Row {
        QString bundleID;
        QString name; ///< of the installed programs that it stands for, each once, where known; else the
                      ///< identifier

        bool operator==(const Row &) const = default;
    };
    /// In the order of the settings.
    QList<Row> rows(List list) const;

    /// The known programs that are not on it yet.
    QList<InstalledApplication> candidates(List list) const;

    /// Adding one that is already there, or removing one that is not, does nothing.
    void add(List list, const QString &bundleID);
    void remove(List list, const QString &bundleID);

    /// Looks for what is installed, which may take a moment; nothing is known before the first time.
    void refresh() { m_known = m_installed.all(); }
    bool isKnown() const { return m_known.has_value(); }

private:
    ConfigStore &m_config;
    const InstalledApplications &m_installed;
    std::optional<QList<InstalledApplication>> m_known;
};

} // namespace nimbrelle
