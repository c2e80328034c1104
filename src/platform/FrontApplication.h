#pragma once

#include <QString>

#include <optional>

namespace nimbrelle {

/// What the copy shortcut does in a program while nothing is marked there.
enum class CopyShortcut {
    ordinary, ///< nothing
    harmful, ///< it ends or interrupts something, or copies what was not marked
    needed, ///< nothing, and what is marked can be had in no other way, whatever shape the pointer has
};

/// The program whose window is active, as it was when asked.
struct Application {
    /// What settings name it by: one of the identifiers of the default exclusion list for the known file
    /// managers, terminals, editors and password managers, else the window class.
    std::optional<QString> bundleID;
    std::optional<QString> name; ///< as shown to the user, in the session's language
    std::optional<QString> windowTitle;
    /// The address of what the window shows, where the window itself tells it. Absent on X11.
    std::optional<QString> document;
    qint64 process = 0; ///< 0: not known
    quint64 window = 0; ///< for activate() alone; 0: none
    CopyShortcut copyShortcut = CopyShortcut::ordinary;

    bool operator==(const Application &) const = default;
};

class FrontApplication {
public:
    virtual ~FrontApplication() = default;

    /// Absent when no window is active, or no window manager tells.
    virtual std::optional<Application> current() const = 0;

    /// Whether current() can be known. Where it can't, an absent one may be any program.
    virtual bool isTold() const { return true; }

    /// This program's own identifier, as current() gives it while one of our windows is active.
    virtual std::optional<QString> ownBundleID() const = 0;

    /// Gives the keyboard focus back to a program that was current() before. Does nothing if it is gone.
    virtual void activate(const Application &application) = 0;
};

} // namespace nimbrelle
