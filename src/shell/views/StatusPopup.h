#pragma once

#include "platform/StatusItem.h"

#include <QMenu>

namespace nimbrelle {

class Theme;

/// The status menu drawn by us, for desktops whose bar doesn't draw it.
class StatusPopup : public QMenu {
    Q_OBJECT

public:
    explicit StatusPopup(const Theme &theme, QWidget *parent = nullptr);

    /// Beside what was clicked, in the toolkit's coordinates, on the side where there is room, so that a
    /// second click meets no line; where that is not known (an empty rectangle), at the pointer.
    void popUp(const QList<MenuEntry> &entries, const QRect &clicked);

signals:
    void chosen(const nimbrelle::MenuEntry &entry);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void add(const MenuEntry &entry);

    const Theme &m_theme;
    QHash<QString, QAction *> m_keys;
};

} // namespace nimbrelle
