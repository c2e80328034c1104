#include "review/views/QuestionBody.h"

#include "frame/ConfigStore.h"
#include "review/views/AnswerLines.h"
#include "widgets/Theme.h"

#include <QFrame>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

QuestionBody::QuestionBody(const ReviewParts &parts, int width)
    : m_parts(parts)
    , m_question(*parts.session.current())
    , m_width(width)
    , m_scroll(new QScrollArea)
    , m_bannerPlace(new QVBoxLayout)
    , m_footPlace(new QVBoxLayout)
{
    const int side = parts.theme.points(reviewMargin);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, parts.theme.points(24));
    rows->setSpacing(0);
    m_scroll->setObjectName(u"questionScroll"_s);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidgetResizable(true);
    m_scroll->viewport()->setAutoFillBackground(false);
    m_scroll->viewport()->installEventFilter(this);
    m_footPlace->setContentsMargins(side, parts.theme.points(8), side, 0);
    rows->addWidget(m_scroll, 1);
    rows->addLayout(m_bannerPlace);
    rows->addLayout(m_footPlace);
}

int QuestionBody::contentWidth() const
{
    return m_width - 2 * m_parts.theme.points(reviewMargin);
}

void QuestionBody::scroll(QAbstractSlider::SliderAction action)
{
    m_scroll->verticalScrollBar()->triggerAction(action);
}

void QuestionBody::add(QVBoxLayout &rows, QWidget *widget, double gap) const
{
    if (!widget)
        return;
    rows.addSpacing(m_parts.theme.points(gap));
    rows.addWidget(widget);
}

void QuestionBody::refresh()
{
    const auto foot = ReviewScreen::foot(m_parts.session);
    const auto live = m_parts.session.liveEntry();
    if (!foot || !live)
        return;
    const Shown before = std::exchange(m_shown,
        {*foot, ReviewScreen::banner(m_parts.session, m_parts.config.config().leechThreshold), *live,
            m_parts.session.phase()});
    const bool isFirst = !m_foot;
    if (isFirst || before.live != m_shown.live || before.phase != m_shown.phase)
        rebuildContent();
    if (isFirst || before.banner != m_shown.banner) {
        replace(*m_bannerPlace, m_banner, makeBanner(m_parts, m_shown.banner));
        const int side = m_parts.theme.points(reviewMargin);
        m_bannerPlace->setContentsMargins(side, m_banner ? m_parts.theme.points(8) : 0, side, 0);
    }
    if (isFirst || before.foot != m_shown.foot)
        replace(*m_footPlace, m_foot, makeFoot(m_shown.foot));
    refreshInputs();
}

/// What is read stays where it was, as far as it is the same.
void QuestionBody::rebuildContent()
{
    const int scrolled = m_scroll->verticalScrollBar()->value();
    auto *content = new QWidget;
    content->setProperty("kind", u"scrolled"_s);
    auto *rows = new QVBoxLayout(content);
    rows->setSpacing(0);
    fillContent(*rows, m_shown.live);
    rows->addStretch(1);
    leave(m_scroll->widget());
    if (QWidget *old = m_scroll->takeWidget())
        old->deleteLater(); // it may hold what was pressed
    setSideMargins(*content);
    m_scroll->setWidget(content);
    content->setAutoFillBackground(false);
    content->show();
    m_scroll->verticalScrollBar()->setValue(scrolled);
}

/// A scroll bar takes its breadth from the margin, so that its coming wraps nothing anew.
void QuestionBody::setSideMargins(const QWidget &content) const
{
    const int side = m_parts.theme.points(reviewMargin);
    const int bar = std::max(0, m_scroll->width() - m_scroll->viewport()->width());
    content.layout()->setContentsMargins(side, 0, side - std::min(side, bar), 0);
}

bool QuestionBody::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize && watched == m_scroll->viewport() && m_scroll->widget())
        setSideMargins(*m_scroll->widget());
    return QWidget::eventFilter(watched, event);
}

/// Else the focus would go from what is taken away to whatever button comes next.
void QuestionBody::leave(const QWidget *old)
{
    if (old && focusWidget() && old->isAncestorOf(focusWidget()))
        setFocus(Qt::OtherFocusReason);
}

void QuestionBody::replace(QVBoxLayout &place, QWidget *&widget, QWidget *next)
{
    if (widget) {
        leave(widget);
        place.removeWidget(widget);
        widget->hide();
        widget->deleteLater(); // it may hold what was pressed
    }
    widget = next;
    if (!next)
        return;
    place.addWidget(next);
    next->show();
}

void QuestionBody::resizeEvent(QResizeEvent *)
{
    if (m_width == width())
        return;
    m_width = width();
    if (m_foot)
        rebuildContent();
    contentWidthChanged();
}

} // namespace nimbrelle
