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

    /// `at` is in pixels of the screen; the menu stays inside that screen.
    void popUp(const QList<MenuEntry> &entries, QPoint at);

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
