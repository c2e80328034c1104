#pragma once

#include <QScrollArea>

namespace nimbrelle {

class Theme;

/// Where what is chosen in the notebook is read. What it is given takes the place of what was there; the
/// focus stays on what has the same name, or goes to `otherwise`.
class DetailPane : public QScrollArea {
    Q_OBJECT

public:
    explicit DetailPane(const Theme &theme);

    void showDetail(QWidget *detail, int scrollOffset, QWidget &otherwise);
    /// A text in the middle, for want of a detail.
    void showEmpty(QWidget *text, QWidget &otherwise);

    int scrollOffset() const;

private:
    void replace(QWidget *content, int scrollOffset, QWidget &otherwise);
    void setMargins();

    const Theme &m_theme;
    bool m_isEmpty = true;
};

} // namespace nimbrelle
