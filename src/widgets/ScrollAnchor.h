#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QScrollArea;
class QWidget;

namespace nimbrelle {

/// Keeps what is in view where it is when something above it grows or shrinks, so that nothing moves away
/// under the pointer. At the top of the page nothing is above, and the page grows as pages do.
class ScrollAnchor final : public QObject {
public:
    /// `sections` stand one below the other in the area's widget, and end with it.
    ScrollAnchor(QScrollArea &area, const QList<QWidget *> &sections);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    int bottomOf(const QWidget &section) const;
    void choose();
    void scroll();

    QScrollArea &m_area;
    QList<QPointer<QWidget>> m_sections;
    QPointer<QWidget> m_anchor; ///< the first section that is in view, in part at least
    int m_owed = 0; ///< pixels to scroll that the range does not hold yet
    bool m_isScrolling = false; ///< it is this that scrolls, and not the user
};

} // namespace nimbrelle
