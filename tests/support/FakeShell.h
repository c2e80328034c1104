#pragma once

#include "platform/StatusItem.h"
#include "shell/AppWindows.h"
#include "support/FakeSpeaker.h"

#include <QStringList>

#include <array>

namespace nimbrelle {

class FakeStatusItem final : public StatusItem {
public:
    void show(MenuSource menu) override { source = std::move(menu); }
    void setTitle(const QString &text) override { title = text; }
    bool isSeen() const override { return true; }
    void setToolTip(const QString &text, const QString &) override { toolTip = text; }

    QStringList openMenu()
    {
        QStringList titles;
        shown = source(MenuUse::opening);
        for (const MenuEntry &entry : std::as_const(shown))
            titles.append(entry.title);
        return titles;
    }
    /// False when no line of the menu begins so.
    bool click(const QString &start)
    {
        openMenu();
        for (const MenuEntry &entry : std::as_const(shown)) {
            if (!entry.title.startsWith(start))
                continue;
            emit chosen(entry);
            return true;
        }
        return false;
    }

    MenuSource source;
    QList<MenuEntry> shown;
    QString title = QStringLiteral("never set");
    QString toolTip;
};

/// Writes down what is asked of it.
class FakeAppWindows final : public AppWindows {
public:
    void show(WindowKind kind) override
    {
        static constexpr std::array names{
            "settings", "words", "add word", "review", "spelling", "coach", "ask"};
        calls.append(QString::fromLatin1(names.at(static_cast<std::size_t>(kind))));
    }
    void showAlert(const QString &title, const QString &text) override { calls.append(title + u'|' + text); }
    void openFile(const QString &path) override { calls.append(path); }

    QStringList take() { return std::exchange(calls, {}); }

    QStringList calls;
};

} // namespace nimbrelle
