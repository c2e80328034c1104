#pragma once

#include <QScrollArea>

#include <functional>

class QVBoxLayout;

namespace nimbrelle {

class Theme;

/// Where what is chosen in the notebook is read. What is made takes the place of what was there; the focus
/// stays on what has the same name, or goes to `otherwise`.
class DetailPane : public QScrollArea {
    Q_OBJECT

public:
    explicit DetailPane(const Theme &theme);

    /// Makes a child of the parent that it is given. A tree of widgets that changes its parent is styled
    /// anew, which takes longer than all else about it.
    using Make = std::function<QWidget *(QWidget *parent)>;

    void showDetail(const Make &make, int scrollOffset, QWidget &otherwise);
    /// A text in the middle, for want of a detail.
    void showEmpty(const Make &make, QWidget &otherwise);

    int scrollOffset() const;

private:
    void replace(const Make &make, int scrollOffset, QWidget &otherwise);
    void setMargins();

    const Theme &m_theme;
    QVBoxLayout *m_place; // of the content, in a widget that stays
    QWidget *m_content = nullptr;
    bool m_isEmpty = true;
};

} // namespace nimbrelle
