#pragma once

#include "platform/InstalledApplications.h"
#include "platform/linux/ProgramKinds.h"
#include "platform/linux/files/DesktopEntry.h"

#include <functional>

namespace nimbrelle {

/// What the front application will be called while it is the program of a desktop file. A desktop file need
/// not tell the class of its windows; where one of them is open, that one does.
QString bundleIDOf(const DesktopEntry &entry, const QString &id, const QList<WindowClass> &openWindows);

/// The programs of the session's desktop files.
class DesktopFileApplications final : public InstalledApplications {
public:
    /// `openWindows` tells the classes of the windows that other programs have open.
    explicit DesktopFileApplications(std::function<QList<WindowClass>()> openWindows)
        : m_openWindows(std::move(openWindows))
    {
    }

    QList<InstalledApplication> all() const override;

private:
    const std::function<QList<WindowClass>()> m_openWindows;
};

} // namespace nimbrelle
