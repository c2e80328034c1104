#pragma once

#include <QString>

namespace nimbrelle {

/// The two halves of a window's WM_CLASS.
struct WindowClass {
    QString instance;
    QString name;
};

/// What settings and guards know a window class by.
struct ProgramKind {
    QString bundleID;
    bool isTerminal = false;

    bool operator==(const ProgramKind &) const = default;
};

/// Known file managers, terminals, code editors and password managers get the identifiers of the default
/// exclusion list; any other program's identifier is its class as it stands. Either half of WM_CLASS may
/// tell, whatever its case.
ProgramKind programKind(const QString &instance, const QString &windowClass);

} // namespace nimbrelle
