#include "widgets/TalkView.h"

#include "widgets/Controls.h"
#include "widgets/FocusPlace.h"
#include "widgets/TabOrder.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace nimbrelle {

TalkView::TalkView(const Theme &theme, const Look &look, QWidget *parent)
    : QWidget(parent), m_theme(theme), m_look(look)
{
    (new QVBoxLayout(this))->setContentsMargins(0, 0, 0, 0);
    connect(&theme, &Theme::changed, this, &TalkView::rebuild);
}

void TalkView::rebuild()
{
    const FocusPlace focus = m_page ? FocusPlace::in(*m_page) : FocusPlace();
    takeAway(m_page);
    m_page = new QWidget;
    auto *rows = new QVBoxLayout(m_page);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    m_list = new TalkList(m_theme, m_look.list);
    m_dock = new TalkDock(m_theme, m_look.dock);
    addHeader(*rows);
    rows->addWidget(m_list, 1);
    rows->addWidget(m_dock);
    layout()->addWidget(m_page);
    m_page->show();
    connect(m_dock, &TalkDock::inputEdited, this, &TalkView::inputEdited);
    connect(m_dock, &TalkDock::sendPressed, this, &TalkView::sendPressed);
    connect(m_dock, &TalkDock::stopPressed, this, &TalkView::stopPressed);
    addChips();
    refresh();
    focus.restore(*m_page, *m_dock);
}

void TalkView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown)
        m_list->scrollPage(event->key() == Qt::Key_PageUp ? -1 : 1);
    else
        QWidget::keyPressEvent(event);
}

/// Messages and chips come and go.
bool TalkView::focusNextPrevChild(bool next)
{
    orderTabs(*m_page);
    return QWidget::focusNextPrevChild(next);
}

} // namespace nimbrelle
