#pragma once

#include <QString>

namespace nimbrelle {

/// The program's windows, one of each kind: made at the first showing and kept after closing. Each show
/// brings its window to the front with the keyboard focus. What a window shows has been begun before the
/// call: it starts no round and no conversation by itself. Main thread only.
class AppWindows {
public:
    virtual ~AppWindows() = default;

    virtual void showSettings() = 0;
    virtual void showWords() = 0;
    virtual void showAddWord() = 0;
    virtual void showReview() = 0;
    virtual void showSpelling() = 0;
    virtual void showCoach() = 0;
    virtual void showAsk() = 0;

    virtual void showAlert(const QString &title, const QString &text) = 0;

    /// With the user's default application.
    virtual void openFile(const QString &path) = 0;
};

} // namespace nimbrelle
