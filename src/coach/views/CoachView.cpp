#include "coach/views/CoachView.h"

#include "coach/CoachFacts.h"
#include "coach/CoachScreen.h"
#include "frame/Clock.h"
#include "widgets/Controls.h"
#include "widgets/FocusPlace.h"
#include "widgets/TalkDock.h"
#include "widgets/TalkList.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double margin = 24;

TalkMessage rowOf(const CoachMessage &message)
{
    return {message.id, !message.fromCoach, message.shown.value_or(message.text)};
}

} // namespace

CoachView::CoachView(
    const Theme &theme, CoachSession &session, const CoachFacts &facts, const Clock &clock, QWidget *parent)
    : QWidget(parent), m_theme(theme), m_session(session), m_facts(facts), m_clock(clock)
{
    setObjectName(u"coach"_s);
    (new QVBoxLayout(this))->setContentsMargins(0, 0, 0, 0);
    connect(&theme, &Theme::changed, this, &CoachView::rebuild);
    connect(&session, &CoachSession::changed, this, &CoachView::refresh);
    connect(&session, &CoachSession::messageGrew, this,
        [this](qsizetype index) { m_list->grow(rowOf(m_session.messages()[index])); });
    connect(&session, &CoachSession::inputChanged, this, [this] { m_dock->setInput(m_session.input()); });
    rebuild();
}

void CoachView::rebuild()
{
    const FocusPlace focus = m_page ? FocusPlace::in(*m_page) : FocusPlace();
    takeAway(m_page);
    m_page = new QWidget;
    auto *rows = new QVBoxLayout(m_page);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    m_list = new TalkList(m_theme, {TalkList::Follow::question, margin, 2, u"教练在看你这几天的记录…"_s, {}});
    m_dock = new TalkDock(m_theme, {margin, u"跟教练说的话"_s, u"跟教练说点什么，比如：今天只有 5 分钟"_s});
    rows->addWidget(makeHeader());
    rows->addWidget(m_list, 1);
    rows->addWidget(m_dock);
    layout()->addWidget(m_page);
    m_page->show();
    connect(m_dock, &TalkDock::inputEdited, &m_session, &CoachSession::setInput);
    connect(m_dock, &TalkDock::sendPressed, &m_session, [this] { m_session.send(); });
    connect(m_dock, &TalkDock::stopPressed, &m_session, &CoachSession::stop);
    m_dock->setInput(m_session.input());
    m_offered.clear();
    m_chips.clear();
    offerChips();
    refresh();
    focus.restore(*m_page, *m_dock);
}

QWidget *CoachView::makeHeader()
{
    auto *header = new QWidget;
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(
        m_theme.points(margin), m_theme.points(14), m_theme.points(margin), m_theme.points(6));
    row->setSpacing(m_theme.points(10));
    auto *title = makeLabel(m_theme, u"AI 教练"_s, TextType::heading, Tone::ink);
    title->setObjectName(u"title"_s);
    m_date = makeLabel(m_theme, {}, TextType::small, Tone::ink2);
    m_date->setObjectName(u"date"_s);
    m_date->setContentsMargins(0, m_theme.points(3), 0, 0); // both on one baseline
    m_date->setFixedHeight(m_theme.points(27));
    m_rewrite = makeIconButton(m_theme, u"rewrite"_s, u"重新写一份今天的简报"_s, Icon::redo, 16);
    connect(m_rewrite, &QPushButton::clicked, &m_session, [this] {
        m_dock->focusField(); // before the button is disabled, and the focus goes anywhere
        m_session.writeBriefing();
    });
    row->addWidget(title);
    row->addWidget(m_date);
    row->addStretch();
    row->addWidget(m_rewrite);
    return header;
}

void CoachView::refresh()
{
    m_date->setText(coachDateText(m_clock.now()));
    QList<TalkMessage> messages;
    for (const CoachMessage &message : m_session.messages())
        messages.append(rowOf(message));
    m_list->setMessages(messages);
    m_rewrite->setEnabled(!m_session.isAnswering());
    m_dock->setAnswering(m_session.isAnswering());
    const bool isBriefingMissing = !m_session.error().isEmpty() && messages.isEmpty();
    m_dock->setError(m_session.error(), isBriefingMissing ? makeRetry() : nullptr);
    enableChips();
}

QPushButton *CoachView::makeRetry()
{
    auto *retry = makeButton(m_theme, u"retry"_s, u"再试一次"_s, {});
    connect(retry, &QPushButton::clicked, &m_session, [this] {
        m_dock->focusField();
        m_session.writeBriefing();
    });
    return retry;
}

void CoachView::offerChips()
{
    const QList<CoachQuestion> offered = offeredQuestions(m_facts.todayReview(m_clock.now()));
    if (offered != m_offered) {
        m_offered = offered;
        m_chips.clear();
        for (const CoachQuestion question : offered)
            m_chips.append(makeChip(question));
        m_dock->setChips(m_chips + QList{makeReviewButton()});
    }
    enableChips();
}

void CoachView::enableChips()
{
    for (QPushButton *chip : std::as_const(m_chips))
        chip->setEnabled(!m_session.isAnswering());
}

QPushButton *CoachView::makeChip(CoachQuestion question)
{
    auto *chip = makeButton(
        m_theme, u"chip%1"_s.arg(static_cast<int>(question)), label(question), {ButtonKind::dockChip});
    connect(chip, &QPushButton::clicked, this, [this, question] { ask(question); });
    return chip;
}

QPushButton *CoachView::makeReviewButton()
{
    auto *review = makeButton(m_theme, u"startReview"_s, u"开始复习"_s, {ButtonKind::dockChip, Icon::stack});
    connect(review, &QPushButton::clicked, this, &CoachView::reviewRequested);
    return review;
}

void CoachView::ask(CoachQuestion question)
{
    m_dock->focusField();
    m_session.send(prompt(question, m_facts.todayReview(m_clock.now())), label(question));
}

void CoachView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return; // back from the task bar
    offerChips();
    refresh(); // another day may have come
    m_dock->focusField();
}

/// A review may have been done since.
bool CoachView::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        offerChips();
    return QWidget::event(event);
}

void CoachView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown)
        m_list->scrollPage(event->key() == Qt::Key_PageUp ? -1 : 1);
    else
        QWidget::keyPressEvent(event);
}

} // namespace nimbrelle
