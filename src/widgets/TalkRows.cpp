#include "widgets/TalkRows.h"

#include "frame/InlineMarkdown.h"
#include "widgets/Controls.h"
#include "widgets/ReadText.h"
#include "widgets/Spinner.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double bubblePadding = 10;
constexpr double leftOfBubble = 50; // at least
constexpr double aboveFooter = 8;
constexpr double footerHeight = 28;

QWidget *makeWaiting(const Theme &theme, const QString &text, QWidget *parent)
{
    auto *waiting = new QWidget(parent);
    waiting->setObjectName(u"waiting"_s);
    waiting->setAccessibleName(text);
    auto *row = new QHBoxLayout(waiting);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(theme.points(8));
    row->addWidget(new Spinner(theme, 18));
    row->addWidget(makeLabel(theme, text, TextType::text, Tone::ink2));
    row->addStretch();
    return waiting;
}

} // namespace

LearnerRow::LearnerRow(const Theme &theme)
    : m_theme(theme), m_bubble(makeArea(u"bubble"_s)), m_text(new ReadText(theme, {}, m_bubble))
{
    m_bubble->setParent(this);
    m_text->setObjectName(u"question"_s);
    m_text->setAccessibleName(u"我说的话"_s);
}

void LearnerRow::setText(const QString &text)
{
    if (m_naturalWidth && text == m_text->toPlainText())
        return;
    m_text->setPlain(text);
    m_naturalWidth = m_text->naturalWidth() + 2 * m_theme.points(bubblePadding);
}

int LearnerRow::bubbleWidth(int width) const
{
    return std::max(0, std::min(m_naturalWidth, width - m_theme.points(leftOfBubble)));
}

int LearnerRow::heightFor(int width) const
{
    const int margins = 2 * m_theme.points(bubblePadding);
    return m_text->heightForWidth(bubbleWidth(width) - margins) + margins;
}

void LearnerRow::resizeEvent(QResizeEvent *)
{
    const int bubble = bubbleWidth(width());
    const int margin = m_theme.points(bubblePadding);
    m_bubble->setGeometry(width() - bubble, 0, bubble, height());
    m_text->setGeometry(margin, margin, bubble - 2 * margin, height() - 2 * margin);
}

AnswerRow::AnswerRow(const Theme &theme, const QString &waiting)
    : m_theme(theme)
    , m_waiting(makeWaiting(theme, waiting, this))
    , m_text(new ReadText(theme, {.pitch = 22, .gap = 10}, this))
{
    m_text->setObjectName(u"answer"_s);
    m_text->setAccessibleName(u"AI 的回答"_s);
    m_text->hide();
}

void AnswerRow::setText(const QString &text)
{
    m_text->growTo(inlineMarkdown(text));
    m_text->setVisible(!text.isEmpty());
    m_waiting->setVisible(text.isEmpty());
}

void AnswerRow::setFooter(QWidget *footer)
{
    if (m_footer) {
        m_footer->hide();
        m_footer->deleteLater(); // it may be what was pressed
    }
    m_footer = footer;
    if (footer) {
        footer->setParent(this);
        footer->show();
    }
    arrange();
}

int AnswerRow::heightFor(int width) const
{
    const int text =
        m_text->isHidden() ? m_theme.points(Theme::pitch(TextType::text)) : m_text->heightForWidth(width);
    return text + (m_footer ? m_theme.points(aboveFooter) + m_theme.points(footerHeight) : 0);
}

void AnswerRow::resizeEvent(QResizeEvent *)
{
    arrange();
}

void AnswerRow::arrange()
{
    const int below = m_footer ? m_theme.points(aboveFooter) + m_theme.points(footerHeight) : 0;
    const QRect top(0, 0, width(), height() - below);
    m_waiting->setGeometry(top);
    m_text->setGeometry(top);
    if (m_footer)
        m_footer->setGeometry(0, height() - m_theme.points(footerHeight),
            std::min(width(), m_footer->sizeHint().width()), m_theme.points(footerHeight));
}

} // namespace nimbrelle
