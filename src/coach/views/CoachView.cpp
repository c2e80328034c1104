#include "coach/views/CoachView.h"

#include "coach/CoachFacts.h"
#include "coach/CoachScreen.h"
#include "frame/Clock.h"
#include "widgets/Controls.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double margin = 24;

const TalkView::Look look{
    .list = {.follow = TalkList::Follow::question,
        .margin = margin,
        .above = 2,
        .waiting = u"教练在看你这几天的记录…"_s},
    .dock = {.margin = margin,
        .fieldName = u"跟教练说的话"_s,
        .placeholder = u"跟教练说点什么，比如：今天只有 5 分钟"_s},
};

TalkMessage rowOf(const Conversation::Message &message)
{
    return {.id = message.id, .isLearner = message.isUser, .text = message.shownText()};
}

} // namespace

CoachView::CoachView(
    const Theme &theme, CoachSession &session, const CoachFacts &facts, const Clock &clock, QWidget *parent)
    : TalkView(theme, look, parent), m_session(session), m_facts(facts), m_clock(clock)
{
    setObjectName(u"coach"_s);
    connect(&session, &CoachSession::changed, this, &CoachView::refresh);
    connect(&session, &CoachSession::messageGrew, this,
        [this](qsizetype index) { list().grow(rowOf(m_session.messages()[index])); });
    connect(&session, &CoachSession::inputChanged, this, [this] { dock().setInput(m_session.input()); });
    connect(this, &CoachView::inputEdited, &session, &CoachSession::setInput);
    connect(this, &CoachView::sendPressed, &session, [&session] { session.send(); });
    connect(this, &CoachView::stopPressed, &session, &CoachSession::stop);
    rebuild();
}

void CoachView::addHeader(QVBoxLayout &rows)
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
        dock().focusField(); // before the button is disabled, and the focus goes anywhere
        m_session.writeBriefing();
    });
    row->addWidget(title);
    row->addWidget(m_date);
    row->addStretch();
    row->addWidget(m_rewrite);
    rows.addWidget(header);
}

void CoachView::refresh()
{
    m_date->setText(coachDateText(m_clock.now()));
    QList<TalkMessage> messages;
    for (const Conversation::Message &message : m_session.messages())
        messages.append(rowOf(message));
    list().setMessages(messages);
    m_rewrite->setEnabled(!m_session.isAnswering());
    dock().setInput(m_session.input());
    dock().setAnswering(m_session.isAnswering());
    dock().setError(m_session.error(), m_session.isBriefingMissing() ? makeRetry() : nullptr);
}

QPushButton *CoachView::makeRetry()
{
    auto *retry = makeButton(m_theme, u"retry"_s, u"再试一次"_s, {});
    connect(retry, &QPushButton::clicked, &m_session, [this] {
        dock().focusField();
        m_session.writeBriefing();
    });
    return retry;
}

void CoachView::addChips()
{
    m_offered.clear();
    offerQuestions();
}

void CoachView::offerQuestions()
{
    const QList<CoachQuestion> offered = offeredQuestions(m_facts.todayReview(m_clock.now()));
    if (offered == m_offered)
        return;
    m_offered = offered;
    QList<QPushButton *> chips;
    for (const CoachQuestion question : offered)
        chips.append(makeChip(question));
    dock().setChips(chips, {makeReviewButton()});
}

QPushButton *CoachView::makeChip(CoachQuestion question)
{
    QPushButton *chip = dock().makeQuestionChip(u"chip%1"_s.arg(static_cast<int>(question)), label(question));
    connect(chip, &QPushButton::clicked, this, [this, question] {
        m_session.send(prompt(question, m_facts.todayReview(m_clock.now())), label(question));
    });
    return chip;
}

QPushButton *CoachView::makeReviewButton()
{
    auto *review = makeButton(
        m_theme, u"startReview"_s, u"开始复习"_s, {.kind = ButtonKind::dockChip, .icon = Icon::stack});
    connect(review, &QPushButton::clicked, this, &CoachView::reviewRequested);
    return review;
}

void CoachView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return; // back from the task bar
    offerQuestions();
    refresh(); // another day may have come
    dock().focusField();
}

/// A review may have been done since.
bool CoachView::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        offerQuestions();
    return QWidget::event(event);
}

} // namespace nimbrelle
