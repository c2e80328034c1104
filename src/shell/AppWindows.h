#pragma once

#include <QString>

namespace nimbrelle {

enum class WindowKind { settings, words, addWord, review, spelling, coach, ask };

/// The program's windows, one of each kind: made at the first showing and kept after closing. Main thread
/// only.
class AppWindows {
public:
    virtual ~AppWindows() = default;

    /// Brings the window to the front with the keyboard focus. What it shows has been begun before the call:
    /// it starts no round and no conversation by itself.
    virtual void show(WindowKind kind) = 0;

    virtual void showAlert(const QString &title, const QString &text) = 0;

    /// With the user's default application.
    virtual void openFile(const QString &path) = 0;
};

} // namespace nimbrelle
