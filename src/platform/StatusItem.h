#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <functional>

namespace nimbrelle {

/// One line of the status item's menu.
struct MenuEntry {
    enum class Kind {
        item,
        check, ///< with a tick or without
        separator,
    };
    enum class Emphasis { plain, strong, secondary };
    struct Run {
        QString text;
        Emphasis emphasis = Emphasis::plain;

        bool operator==(const Run &) const = default;
    };

    Kind kind = Kind::item;
    QString title;
    QList<Run> runs; ///< the title in pieces, for a desktop that can show them so; empty for a plain one
    QString symbol; ///< the name of its icon; empty for none
    bool isChecked = false;
    bool isEnabled = true;
    int indent = 0; ///< in levels
    QString key; ///< chooses it while the menu is open: one letter or sign without modifiers; empty for none
    QString toolTip;
    int action = 0; ///< what it does, in its owner's own numbering
    QString payload; ///< what it does that to; empty for none

    bool operator==(const MenuEntry &) const = default;
};

/// The program's place in the desktop's bar: an icon, a text beside it where the bar can show one, a tool tip
/// and a menu. All calls may come before it is shown and while no bar is there. Main thread only.
class StatusItem : public QObject {
    Q_OBJECT

public:
    enum class MenuUse {
        listing, ///< somebody reads the menu, and nobody may be looking at it
        opening, ///< it opens before the user
    };
    using MenuSource = std::function<QList<MenuEntry>(MenuUse use)>;

    /// From now on it is in the bar, also in one that comes later or comes back. `menu` is asked afresh
    /// each time the menu opens.
    virtual void show(MenuSource menu) = 0;

    /// Beside the icon; empty for none.
    virtual void setTitle(const QString &title) = 0;

    /// `text` may be of several lines and hold markup of the kind `<b>`; everything else in it is escaped.
    virtual void setToolTip(const QString &title, const QString &text) = 0;

    /// Whether a bar shows it now, as far as one can know; true while the desktop has not told yet.
    virtual bool isSeen() const = 0;

signals:
    void seenChanged(); ///< maybe
    void chosen(const nimbrelle::MenuEntry &entry);
};

} // namespace nimbrelle
