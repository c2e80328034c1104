#pragma once

#include "platform/InstalledApplications.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/XConnection.h"

namespace nimbrelle {

/// The two halves of a window's WM_CLASS.
struct WindowClass {
    QString instance;
    QString name;
};

/// What XFrontApplication will call the program of a desktop file. A desktop file need not tell the class of
/// its windows; where one of them is open, that one does.
QString bundleIDOf(const DesktopEntry &entry, const QString &id, const QList<WindowClass> &openWindows);

/// The programs of the session's desktop files.
class DesktopFileApplications final : public InstalledApplications {
public:
    explicit DesktopFileApplications(XConnection &x) : m_x(x) { }

    QList<InstalledApplication> all() const override;

private:
    QList<WindowClass> openWindows() const;

    XConnection &m_x;
};

} // namespace nimbrelle
