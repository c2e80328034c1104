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
        QString name; ///< of the installed programs that it stands for, else the identifier itself

        bool operator==(const Row &) const = default;
    };
    /// In the order of the settings.
    QList<Row> rows() const;

    /// The installed programs that are not excluded yet.
    QList<InstalledApplication> candidates() const;

    /// Excluding one that is already excluded, or removing one that is not, does nothing.
    void exclude(const QString &bundleID);
    void remove(const QString &bundleID);

    /// Looks again for what is installed, at the next question.
    void refresh() { m_known.reset(); }

private:
    const QList<InstalledApplication> &known() const;

    ConfigStore &m_config;
    const InstalledApplications &m_installed;
    mutable std::optional<QList<InstalledApplication>> m_known;
};

} // namespace nimbrelle
