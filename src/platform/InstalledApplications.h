#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace nimbrelle {

/// A program that the user can pick from a list.
struct InstalledApplication {
    QString bundleID; ///< as FrontApplication gives it while a window of the program is active
    QString name; ///< in the session's language
    QString icon; ///< a name in the icon theme, or the path of a file; empty for none
    QString program = {}; ///< the file name of what it starts; several entries may start the same

    bool operator==(const InstalledApplication &) const = default;
};

class InstalledApplications {
public:
    virtual ~InstalledApplications() = default;

    /// Those that a menu would show, read afresh, by name. Several may share an identifier.
    virtual QList<InstalledApplication> all() const = 0;
};

} // namespace nimbrelle
