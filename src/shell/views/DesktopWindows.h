#pragma once

#include "shell/AppWindows.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

namespace nimbrelle {

class Theme;

/// One row of the table of windows.
struct WindowRow {
    WindowKind kind;
    QString name; ///< the object name
    QString title;
    QSize size; ///< in points, where the screen has room for it
    std::function<QWidget *()> make; ///< its content, which the window takes over
    std::optional<WindowKind> replaces = std::nullopt; ///< hidden when this one is shown
};

/// The program's windows as the toolkit makes them: each at its first showing, inside the screen, and kept
/// after closing.
class DesktopWindows final : public AppWindows {
public:
    /// A row for each kind, in any order. `focus` gives a window that is shown the keyboard, whoever has it.
    DesktopWindows(const Theme &theme, const std::vector<WindowRow> &rows, std::function<void(WId)> focus);
    ~DesktopWindows() override;

    void show(WindowKind kind) override;
    void showAlert(const QString &title, const QString &text) override;
    void openFile(const QString &path) override;

private:
    struct Entry {
        WindowRow row;
        QPointer<QWidget> window; ///< null before the first showing
    };

    Entry &entryOf(WindowKind kind);
    QWidget *make(const WindowRow &row) const;

    const Theme &m_theme;
    const std::function<void(WId)> m_focus;
    std::vector<Entry> m_entries;
};

} // namespace nimbrelle
