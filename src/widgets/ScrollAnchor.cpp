#include "widgets/ScrollAnchor.h"

#include <QEvent>
#include <QMoveEvent>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace nimbrelle {

ScrollAnchor::ScrollAnchor(QScrollArea &area, const QList<QWidget *> &sections)
    : QObject(area.widget()), m_area(area)
{
    for (QWidget *section : sections) {
        section->installEventFilter(this);
        m_sections.append(section);
    }
    connect(area.verticalScrollBar(), &QScrollBar::valueChanged, this, &ScrollAnchor::choose);
    connect(area.verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] {
        scroll();
        m_owed = 0;
    });
}

bool ScrollAnchor::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Move && watched == m_anchor) {
        const auto *move = static_cast<QMoveEvent *>(event);
        m_owed += move->pos().y() - move->oldPos().y();
        scroll();
    }
    return QObject::eventFilter(watched, event);
}

int ScrollAnchor::bottomOf(const QWidget &section) const
{
    return section.mapTo(m_area.widget(), QPoint(0, section.height())).y();
}

void ScrollAnchor::choose()
{
    if (m_isScrolling)
        return;
    m_owed = 0;
    const int top = m_area.verticalScrollBar()->value();
    const auto isInView = [&](const QWidget *section) {
        return section && !section->isHidden() && bottomOf(*section) > top;
    };
    const auto first = std::ranges::find_if(m_sections, isInView);
    m_anchor = top > 0 && first != m_sections.end() ? *first : nullptr;
}

void ScrollAnchor::scroll()
{
    QScrollBar *bar = m_area.verticalScrollBar();
    const QScopedValueRollback scrolling(m_isScrolling, true);
    const int before = bar->value();
    bar->setValue(before + m_owed);
    m_owed -= bar->value() - before;
}

} // namespace nimbrelle
