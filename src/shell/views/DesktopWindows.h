#pragma once

#include "shell/AppWindows.h"

#include <QPointer>
#include <QWidget>

#include <array>
#include <functional>

namespace nimbrelle {

class Theme;

/// The program's windows as the toolkit makes them: each at its first showing, inside the screen, and kept
/// after closing.
class DesktopWindows final : public AppWindows {
public:
    /// Each makes the content of one window; the window takes it over.
    struct Contents {
        std::function<QWidget *()> settings;
        std::function<QWidget *()> words;
        std::function<QWidget *()> addWord;
        std::function<QWidget *()> review; ///< of any round, spelling ones too
        std::function<QWidget *()> coach;
        std::function<QWidget *()> ask;
    };

    /// `focus` gives a window that is shown the keyboard, whoever has it.
    DesktopWindows(const Theme &theme, Contents contents, std::function<void(WId)> focus);
    ~DesktopWindows() override;

    void showSettings() override;
    void showWords() override;
    void showAddWord() override;
    void showReview() override;
    void showSpelling() override;
    void showCoach() override;
    void showAsk() override;
    void showAlert(const QString &title, const QString &text) override;
    void openFile(const QString &path) override;

private:
    enum class Kind { settings, words, addWord, review, spelling, coach, ask };
    static constexpr std::size_t kindCount = 7;

    QPointer<QWidget> &window(Kind kind) { return m_windows.at(static_cast<std::size_t>(kind)); }
    QWidget *make(Kind kind) const;
    void show(Kind kind);

    const Theme &m_theme;
    const Contents m_contents;
    const std::function<void(WId)> m_focus;
    std::array<QPointer<QWidget>, kindCount> m_windows;
};

} // namespace nimbrelle
