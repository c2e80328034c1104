#include "wordbook/views/UndoLine.h"

#include "widgets/Controls.h"
#include "widgets/Layouts.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

// In points.
constexpr double lineHeight = 40;
constexpr double inset = 18;
constexpr double gap = 8;

} // namespace

UndoLine::UndoLine(const Theme &theme)
    : m_content(new QWidget)
    , m_label(makeLabel(theme, {}, TextType::small, Tone::ink2))
    , m_button(makeButton(theme, u"undoDeletion"_s, u"撤销"_s, {.kind = ButtonKind::link}))
{
    setObjectName(u"undoLine"_s);
    setFixedHeight(theme.points(lineHeight));
    m_label->setObjectName(u"deleted"_s);
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    setPlainToolTip(*m_button, QKeySequence(QKeySequence::Undo).toString(QKeySequence::NativeText));
    auto *column = bareLayout<QVBoxLayout>(this, 0);
    column->addWidget(m_content);
    auto *content = bareLayout<QVBoxLayout>(m_content, 0);
    content->addWidget(makeLine());
    auto *row = bareLayout<QHBoxLayout>(nullptr, theme.points(gap));
    row->setContentsMargins(theme.points(inset), 0, theme.points(inset), 0);
    row->addWidget(m_label, 1);
    row->addWidget(m_button);
    content->addLayout(row, 1);
    connect(m_button, &QPushButton::clicked, this, &UndoLine::undoRequested);
}

void UndoLine::setText(const QString &text)
{
    m_text = text;
    m_button->setAccessibleDescription(text);
    m_content->setVisible(!text.isEmpty());
    elide();
}

void UndoLine::resizeEvent(QResizeEvent *)
{
    elide();
}

void UndoLine::elide()
{
    layout()->activate();
    m_content->layout()->activate();
    m_label->setText(m_label->fontMetrics().elidedText(m_text, Qt::ElideRight, m_label->width()));
    m_label->setAccessibleName(m_text);
    setPlainToolTip(*m_label, m_label->text() == m_text ? QString() : m_text);
}

} // namespace nimbrelle
