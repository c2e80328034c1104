#pragma once

#include "platform/InstalledApplications.h"

namespace nimbrelle {

class ConfigStore;

/// The programs in which nothing pops up, as the settings list them. Main thread only.
class ExcludedApplications {
public:
    ExcludedApplications(ConfigStore &config, const InstalledApplications &installed);

    struct Row {
        QString bundleID;
        QString name; ///< of the installed programs that it stands for, each once, where known; else the
                      ///< identifier

        bool operator==(const Row &) const = default;
    };
    /// In the order of the settings.
    QList<Row> rows() const;

    /// The known programs that are not excluded yet.
    QList<InstalledApplication> candidates() const;

    /// Excluding one that is already excluded, or removing one that is not, does nothing.
    void exclude(const QString &bundleID);
    void remove(const QString &bundleID);

    /// Looks for what is installed, which may take a moment; nothing is known before the first time.
    void refresh() { m_known = m_installed.all(); }
    bool isKnown() const { return m_known.has_value(); }

private:
    ConfigStore &m_config;
    const InstalledApplications &m_installed;
    std::optional<QList<InstalledApplication>> m_known;
};

} // namespace nimbrelle
