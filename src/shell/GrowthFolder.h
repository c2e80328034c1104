#pragma once

#include <QString>

namespace nimbrelle {

class AppPaths;

/// Where the growth archive lives: a folder beside that of the data files, with the script that generates the
/// report and the report itself.
class GrowthFolder {
public:
    static constexpr const char *interpreter = "/usr/bin/python3";

    explicit GrowthFolder(const AppPaths &paths);

    const QString &path() const { return m_path; }
    QString programs() const;
    QString script() const;
    QString report() const;

    /// Whether there is a script that is the user's own: script and folders, none of them a link, belong to
    /// the user, and neither a group nor others can write them. Any other could be somebody else's program.
    bool hasOwnScript() const;

private:
    const QString m_path;
};

} // namespace nimbrelle
