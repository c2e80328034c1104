#include "wordbook/views/DetailPane.h"

#include "widgets/FocusPlace.h"
#include "widgets/Layouts.h"
#include "widgets/Theme.h"

#include <QScrollBar>

namespace nimbrelle {

using namespace Qt::StringLiterals;

DetailPane::DetailPane(const Theme &theme) : m_theme(theme), m_place(bareLayout<QVBoxLayout>(new QWidget, 0))
{
    setObjectName(u"detail"_s);
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(u"详情"_s);
    setProperty("kind", u"reading"_s);
    viewport()->setAutoFillBackground(false);
    QWidget *holder = m_place->parentWidget();
    holder->setProperty("kind", u"scrolled"_s);
    setWidget(holder);
    holder->setAutoFillBackground(false);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &DetailPane::setMargins);
}

void DetailPane::showDetail(const Make &make, int scrollOffset, QWidget &otherwise)
{
    m_isEmpty = false;
    replace(make, scrollOffset, otherwise);
}

void DetailPane::showEmpty(const Make &make, QWidget &otherwise)
{
    m_isEmpty = true;
    replace(make, 0, otherwise);
}

int DetailPane::scrollOffset() const
{
    return verticalScrollBar()->value();
}

void DetailPane::replace(const Make &make, int scrollOffset, QWidget &otherwise)
{
    const FocusPlace focus = m_content ? FocusPlace::in(*m_content) : FocusPlace();
    if (QWidget *old = m_content) { // later, since the button that was pressed is in it
        if (focus.isSomewhere())
            setFocus(Qt::OtherFocusReason); // or it would go to whatever comes next
        m_place->removeWidget(old);
        old->hide();
        old->deleteLater();
    }
    m_content = make(widget());
    setMargins();
    m_place->addWidget(m_content);
    m_content->show();
    widget()->layout()->activate();
    verticalScrollBar()->setValue(scrollOffset);
    focus.restore(*m_content, otherwise);
}

/// A scroll bar takes its breadth from the margin, so that lines keep their length.
void DetailPane::setMargins()
{
    if (m_isEmpty)
        return m_place->setContentsMargins(0, 0, 0, 0);
    const int side = m_theme.points(28) - frameWidth();
    const bool scrolls = verticalScrollBar()->maximum() > 0;
    m_place->setContentsMargins(
        side, m_theme.points(20) - frameWidth(), side - (scrolls ? m_theme.points(8) : 0), side);
}

} // namespace nimbrelle
