#include "wordbook/views/DetailPane.h"

#include "widgets/FocusPlace.h"
#include "widgets/Theme.h"

#include <QLayout>
#include <QScrollBar>

namespace nimbrelle {

using namespace Qt::StringLiterals;

DetailPane::DetailPane(const Theme &theme) : m_theme(theme)
{
    setObjectName(u"detail"_s);
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(u"详情"_s);
    setProperty("kind", u"reading"_s);
    viewport()->setAutoFillBackground(false);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &DetailPane::setMargins);
}

void DetailPane::showDetail(QWidget *detail, int scrollOffset, QWidget &otherwise)
{
    m_isEmpty = false;
    replace(detail, scrollOffset, otherwise);
}

void DetailPane::showEmpty(QWidget *text, QWidget &otherwise)
{
    m_isEmpty = true;
    replace(text, 0, otherwise);
}

int DetailPane::scrollOffset() const
{
    return verticalScrollBar()->value();
}

void DetailPane::replace(QWidget *content, int scrollOffset, QWidget &otherwise)
{
    const FocusPlace focus = FocusPlace::in(*this);
    content->setProperty("kind", u"scrolled"_s);
    content->setAutoFillBackground(false);
    if (QWidget *old = takeWidget()) { // later, since the button that was pressed is in it
        old->setParent(nullptr);
        old->deleteLater();
    }
    setWidget(content);
    setMargins();
    content->show();
    content->layout()->activate();
    verticalScrollBar()->setValue(scrollOffset);
    focus.restore(*content, otherwise);
}

/// A scroll bar takes its breadth from the margin, so that lines keep their length.
void DetailPane::setMargins()
{
    if (m_isEmpty || !widget())
        return;
    const int side = m_theme.points(28) - frameWidth();
    const bool scrolls = verticalScrollBar()->maximum() > 0;
    widget()->layout()->setContentsMargins(
        side, m_theme.points(20) - frameWidth(), side - (scrolls ? m_theme.points(8) : 0), side);
}

} // namespace nimbrelle
