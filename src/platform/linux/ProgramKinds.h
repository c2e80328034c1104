#pragma once

#include "platform/FrontApplication.h"

namespace nimbrelle {

class ProgramNames;

/// The two halves of a window's WM_CLASS.
struct WindowClass {
    QString instance;
    QString name;
};

/// What settings and guards know a window class by.
struct ProgramKind {
    QString bundleID;
    CopyShortcut copyShortcut = CopyShortcut::ordinary;

    bool operator==(const ProgramKind &) const = default;
};

/// Known file managers, terminals, code editors and password managers get the identifiers of the default
/// exclusion list; any other program's identifier is its class as it stands. The copy shortcut does harm in
/// all of these, and in players, virtual machines, remote desktops and whatever else has a use of its own for
/// it. Either half of WM_CLASS may tell, whatever its case. A program that is missing goes into the table.
ProgramKind programKind(const QString &instance, const QString &windowClass);

/// The program of a window, by its class, or by what a Wayland program calls itself in the place of both
/// halves. Nothing but its identifier, its name and its kind is filled in, and nothing at all where both are
/// empty.
Application programOf(const WindowClass &window, ProgramNames &names);

/// This program itself, as FrontApplication tells it.
Application ownProgram();

} // namespace nimbrelle
