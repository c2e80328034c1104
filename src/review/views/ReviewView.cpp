#include "review/views/ReviewView.h"

#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "review/views/AnswerLines.h"
#include "review/views/EndPage.h"
#include "review/views/RecognitionBody.h"
#include "review/views/SpellBody.h"
#include "widgets/Controls.h"
#include "widgets/Layouts.h"
#include "widgets/ProgressLine.h"
#include "widgets/ReadText.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>

namespace nimbrelle {

using namespace Qt::StringLiterals;

ReviewView::ReviewView(const ReviewParts &parts, QWidget *parent) : QWidget(parent), m_parts(parts)
{
    setObjectName(u"review"_s);
    setFocusPolicy(Qt::StrongFocus);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    connect(&parts.theme, &Theme::changed, this, &ReviewView::rebuild);
    connect(&parts.session, &ReviewSession::changed, this, &ReviewView::refresh);
    connect(&parts.config, &ConfigStore::configChanged, this, &ReviewView::refresh);
}

void ReviewView::showEvent(QShowEvent *)
{
    refresh();
}

void ReviewView::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        m_parts.session.waitForLearner();
}

void ReviewView::rebuild()
{
    setPage(nullptr);
    m_body = nullptr;
    refresh();
}

/// There are two of these windows for one session.
void ReviewView::refresh()
{
    if (!isVisible())
        return;
    if (ReviewScreen::foot(m_parts.session))
        showQuestion();
    else
        showEnd();
}

void ReviewView::showQuestion()
{
    if (!m_body || m_body->questionId() != m_parts.session.current()->id)
        setPage(makeQuestionPage());
    else
        m_body->refresh();
    if (const auto progress = ReviewScreen::progress(m_parts.session)) {
        m_progress->setProgress(progress->done, progress->total, progress->text);
        m_progressText->setText(progress->text);
    }
    const QWidget *focused = focusWidget();
    if (!focused || !focused->isVisible())
        takeFocus();
}

ReviewView::End ReviewView::end() const
{
    if (std::holds_alternative<ReviewSession::Finished>(m_parts.session.phase()))
        return ReviewScreen::summary(m_parts.session, m_parts.words, m_parts.clock.now());
    return ReviewScreen::emptyRound(m_parts.session, m_parts.words, m_parts.config.config().learningSlots);
}

void ReviewView::showEnd()
{
    const End shown = end();
    if (m_page && !m_body && m_end == shown)
        return;
    const auto *summary = std::get_if<ReviewScreen::Summary>(&shown);
    auto *page = summary ? new EndPage(m_parts.theme, *summary)
                         : new EndPage(m_parts.theme, std::get<ReviewScreen::EmptyRound>(shown));
    connectEnd(*page);
    setPage(page);
    m_body = nullptr;
    m_end = shown;
}

void ReviewView::connectEnd(EndPage &page)
{
    ReviewSession &session = m_parts.session;
    connect(&page, &EndPage::againPressed, &session, [&session] {
        if (session.isSpellingPractice())
            session.startSpelling();
        else
            session.start(0);
    });
    connect(&page, &EndPage::morePressed, &session, [&session] { session.start(5); });
    connect(&page, &EndPage::closePressed, this, &ReviewView::closed);
}

void ReviewView::setPage(QWidget *page)
{
    takeFocus(); // or it would go to any button of the new page
    if (m_page) {
        layout()->removeWidget(m_page);
        m_page->hide();
        m_page->deleteLater(); // it may hold what was pressed
    }
    m_page = page;
    if (!page)
        return;
    layout()->addWidget(page);
    page->show(); // now, not when the layout gets to it
}

void ReviewView::takeFocus()
{
    setFocus(Qt::OtherFocusReason);
}

QWidget *ReviewView::makeQuestionPage()
{
    const Theme &theme = m_parts.theme;
    auto *page = new QWidget;
    auto *rows = bareLayout<QVBoxLayout>(page, 0);
    rows->addWidget(makeTopBar());
    rows->addWidget(makeHeader());
    rows->addSpacing(theme.points(14));
    if (m_parts.session.current()->isSpelling())
        m_body = new SpellBody(m_parts, width());
    else
        m_body = new RecognitionBody(m_parts, width());
    rows->addWidget(m_body, 1);
    return page;
}

QWidget *ReviewView::makeTopBar()
{
    const Theme &theme = m_parts.theme;
    auto *bar = new QWidget;
    auto *row = new QHBoxLayout(bar);
    row->setContentsMargins(theme.points(reviewMargin), theme.points(22), theme.points(reviewMargin), 0);
    row->setSpacing(theme.points(14));
    m_progress = new ProgressLine(theme, u"progress"_s);
    row->addWidget(m_progress, 1);
    m_progressText = makeLabel(theme, {}, TextType::small, Tone::ink2);
    m_progressText->setObjectName(u"progressText"_s);
    row->addWidget(m_progressText);
    return bar;
}

QWidget *ReviewView::makeHeader()
{
    const Theme &theme = m_parts.theme;
    const ReviewQuestion &question = *m_parts.session.current();
    auto *header = new QWidget;
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(theme.points(reviewMargin), theme.points(20), theme.points(reviewMargin), 0);
    row->setSpacing(theme.points(10));
    auto *seal = makeLabel(theme, ReviewScreen::badge(question), TextType::text, Tone::onLeaf, QFont::Bold);
    seal->setObjectName(u"badge"_s);
    seal->setProperty("kind", u"seal"_s);
    seal->setAlignment(Qt::AlignCenter);
    seal->setFixedSize(theme.points(24), theme.points(24));
    row->addWidget(seal, 0, Qt::AlignTop);
    auto *prompt = new ReadText(theme, {.type = TextType::text, .tone = Tone::ink2, .pitch = 24});
    prompt->setObjectName(u"prompt"_s);
    prompt->setAccessibleName(u"题目"_s);
    prompt->setPlain(ReviewScreen::prompt(question));
    row->addWidget(prompt, 1);
    return header;
}

bool ReviewView::scroll(int key)
{
    static const QHash<int, QAbstractSlider::SliderAction> actions{
        {Qt::Key_PageUp, QAbstractSlider::SliderPageStepSub},
        {Qt::Key_PageDown, QAbstractSlider::SliderPageStepAdd},
        {Qt::Key_Home, QAbstractSlider::SliderToMinimum},
        {Qt::Key_End, QAbstractSlider::SliderToMaximum},
    };
    if (!m_body || !actions.contains(key))
        return false;
    m_body->scroll(actions.value(key));
    return true;
}

/// A click beside the field must not take the keyboard from it.
void ReviewView::focusInEvent(QFocusEvent *event)
{
    if (m_body && event->reason() == Qt::MouseFocusReason)
        m_body->focusInput();
}

void ReviewView::keyPressEvent(QKeyEvent *event)
{
    ReviewSession &session = m_parts.session;
    const auto foot = ReviewScreen::foot(session);
    const int key = event->key();
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (key == Qt::Key_R && event->modifiers() == Qt::ControlModifier) {
        if (auto *spelling = qobject_cast<SpellBody *>(m_body))
            spelling->speakAgain();
        return;
    }
    if (m_body && m_body->handleKey(*event))
        return;
    if (!foot || !isPlain)
        return QWidget::keyPressEvent(event);
    if (scroll(key))
        return;
    if (event->isAutoRepeat())
        return; // a key held down must not answer what comes next
    using enum ReviewScreen::Foot;
    const bool isReturn = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (*foot == reveal && key == Qt::Key_Space)
        session.reveal();
    else if (*foot == rate && key >= Qt::Key_1 && key <= Qt::Key_4)
        session.rate(*ratingFromRaw(key - Qt::Key_1 + 1));
    else if ((*foot == next || *foot == proceed) && isReturn)
        session.next();
    else
        QWidget::keyPressEvent(event);
}

} // namespace nimbrelle
