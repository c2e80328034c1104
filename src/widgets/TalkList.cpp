#include "widgets/TalkList.h"

#include "widgets/Controls.h"

#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double betweenRows = 16;
constexpr int nearlyAtEnd = 4;

} // namespace

TalkList::TalkList(const Theme &theme, const Look &look)
    : m_theme(theme)
    , m_look(look)
    , m_content(new QWidget)
    , m_hint(makeLabel(theme, look.hint, TextType::text, Tone::ink2))
{
    setObjectName(u"messages"_s);
    setAccessibleName(u"对话"_s);
    setProperty("kind", u"talkList"_s);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::TabFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidget(m_content);
    viewport()->setAutoFillBackground(false);
    m_content->setAutoFillBackground(false);
    m_hint->setObjectName(u"hint"_s);
    m_hint->setParent(m_content);
    verticalScrollBar()->setSingleStep(theme.points(22));
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
        if (!m_isArranging)
            m_isAtEnd = value >= verticalScrollBar()->maximum() - nearlyAtEnd;
    });
}

TalkList::Row *TalkList::find(const QUuid &id)
{
    const auto found = std::ranges::find(m_rows, id, &Row::id);
    return found == m_rows.end() ? nullptr : &*found;
}

void TalkList::setMessages(const QList<TalkMessage> &messages)
{
    const bool isGoingOn = removeOthers(messages);
    const std::size_t before = m_rows.size();
    for (const TalkMessage &message : messages) {
        if (Row *row = find(message.id))
            row->widget->setText(message.text);
        else
            append(message);
    }
    if (!isGoingOn)
        m_question = {};
    if (m_rows.size() > before) {
        m_isAtEnd = true;
        if (isGoingOn)
            noteNewQuestion();
    }
    m_hint->setVisible(m_rows.empty() && !m_look.hint.isEmpty());
    arrange();
    if (!isGoingOn && m_look.follow == Follow::question)
        verticalScrollBar()->setValue(0);
    else if (m_rows.size() > before && isGoingOn && find(m_question))
        verticalScrollBar()->setValue(find(m_question)->widget->y() - m_theme.points(m_look.above));
}

// Whether any are left.
bool TalkList::removeOthers(const QList<TalkMessage> &messages)
{
    std::erase_if(m_rows, [&messages](const Row &row) {
        const bool stays = std::ranges::any_of(
            messages, [&row](const TalkMessage &message) { return message.id == row.id; });
        if (!stays) {
            row.widget->hide();
            row.widget->deleteLater();
        }
        return !stays;
    });
    return !m_rows.empty();
}

void TalkList::append(const TalkMessage &message)
{
    TalkRow *row = message.isLearner ? static_cast<TalkRow *>(new LearnerRow(m_theme))
                                     : new AnswerRow(m_theme, m_look.waiting);
    row->setParent(m_content);
    row->setText(message.text);
    row->show();
    m_rows.push_back({.id = message.id, .widget = row, .isLearner = message.isLearner});
}

void TalkList::noteNewQuestion()
{
    const bool isAnswered = m_rows.size() >= 2 && m_rows[m_rows.size() - 2].isLearner;
    if (m_look.follow == Follow::question && isAnswered)
        m_question = m_rows[m_rows.size() - 2].id;
}

void TalkList::grow(const TalkMessage &message)
{
    Row *row = find(message.id);
    if (!row)
        return;
    row->widget->setText(message.text);
    arrange();
}

void TalkList::setFooter(const QUuid &id, QWidget *footer)
{
    Row *row = find(id);
    if (auto *answer = row ? qobject_cast<AnswerRow *>(row->widget) : nullptr)
        answer->setFooter(footer);
    else
        delete footer;
    arrange();
}

// Without a layout, which would place the rows only after the scrolling needs to know where they are.
void TalkList::arrange()
{
    const QScopedValueRollback guard(m_isArranging, true);
    const int value = verticalScrollBar()->value();
    const int end = placeRows(width() - 2 * m_theme.points(m_look.margin));
    m_content->resize(viewport()->width(), end + spaceBelow(end));
    restoreScroll(value);
}

// The scroll bar lies in the margin, so that no text is wrapped anew when it appears.
int TalkList::placeRows(int width)
{
    const int left = m_theme.points(m_look.margin) - frameWidth();
    const int gap = m_theme.points(betweenRows);
    int y = m_theme.points(m_look.above);
    m_hint->setGeometry(left, y, width, m_hint->height());
    for (const Row &row : m_rows) {
        const int height = row.widget->heightFor(width);
        row.widget->setGeometry(left, y, width, height);
        y += height + gap;
    }
    return m_rows.empty() ? y + m_hint->height() + gap : y;
}

int TalkList::spaceBelow(int end) const
{
    const auto question = std::ranges::find(m_rows, m_question, &Row::id);
    if (question == m_rows.end())
        return 0;
    const int top = question->widget->y() - m_theme.points(m_look.above);
    return std::max(0, top + viewport()->height() - end);
}

void TalkList::restoreScroll(int value)
{
    QScrollBar &bar = *verticalScrollBar();
    bar.setValue(m_look.follow == Follow::newest && m_isAtEnd ? bar.maximum() : value);
}

void TalkList::scrollPage(int direction)
{
    verticalScrollBar()->triggerAction(
        direction < 0 ? QAbstractSlider::SliderPageStepSub : QAbstractSlider::SliderPageStepAdd);
}

void TalkList::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    arrange();
}

void TalkList::showEvent(QShowEvent *event)
{
    QScrollArea::showEvent(event);
    arrange();
}

void TalkList::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Home)
        verticalScrollBar()->setValue(0);
    else if (event->key() == Qt::Key_End)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    else
        QScrollArea::keyPressEvent(event);
}

} // namespace nimbrelle
