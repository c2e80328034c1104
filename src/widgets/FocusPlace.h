#pragma once

#include <QWidget>

#include <algorithm>

namespace nimbrelle {

/// Where the focus is in a pane that is put together anew: the name of what has it, and which of that name
/// it is.
struct FocusPlace {
    QString name;
    qsizetype number = -1; ///< none

    static FocusPlace in(const QWidget &pane)
    {
        QWidget *focused = pane.window()->focusWidget();
        if (!focused || !pane.isAncestorOf(focused))
            return {};
        const QString name = focused->objectName();
        return {name, pane.findChildren<QWidget *>(name).indexOf(focused)};
    }

    bool isSomewhere() const { return number >= 0; }

    /// Null when the pane has nothing of that name.
    QWidget *find(const QWidget &pane) const
    {
        const auto same = pane.findChildren<QWidget *>(name);
        return same.isEmpty() ? nullptr : same[std::min(number, same.size() - 1)];
    }

    /// Gives the focus back, to the other one where the place is gone or can't take it.
    void restore(const QWidget &pane, QWidget &otherwise) const
    {
        if (!isSomewhere())
            return;
        QWidget *next = find(pane);
        (next && next->isEnabled() ? next : &otherwise)->setFocus(Qt::OtherFocusReason);
    }
};

} // namespace nimbrelle
