#include "widgets/TalkField.h"

#include "widgets/Typing.h"

#include <QAbstractTextDocumentLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QTextBlock>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr double linePitch = 20;
constexpr int mostLines = 5;
constexpr double verticalPadding = 8;
constexpr double horizontalPadding = 10;
constexpr int frame = 2; // of the style sheet, with the focus ring

} // namespace

TalkField::TalkField(const Theme &theme, const QString &name, const QString &placeholder)
    : m_theme(theme), m_placeholder(placeholder), m_composing(*new ComposingGuard(*this))
{
    setObjectName(u"input"_s);
    setAccessibleName(name);
    setAccessibleDescription(placeholder);
    setProperty("kind", u"talkField"_s);
    setAcceptRichText(false);
    setTabChangesFocus(true);
    setFont(theme.font(TextType::text));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    const int side = theme.points(horizontalPadding) - frame;
    const int edge = theme.points(verticalPadding) - frame;
    setViewportMargins(side, edge, side, edge);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setLinePitch();
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
        &TalkField::fitHeight);
    fitHeight();
}

// New lines take it over from the line that was broken.
void TalkField::setLinePitch()
{
    QTextBlockFormat format;
    format.setLineHeight(m_theme.points(linePitch), QTextBlockFormat::FixedHeight);
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.setBlockFormat(format);
}

void TalkField::setText(const QString &text)
{
    if (text == toPlainText())
        return;
    QTextCursor cursor(document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    moveCursor(QTextCursor::End);
}

void TalkField::fitHeight()
{
    const int line = m_theme.points(linePitch);
    const int lines =
        std::clamp(qRound(document()->documentLayout()->documentSize().height() / line), 1, mostLines);
    setVerticalScrollBarPolicy(lines < mostLines ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    setFixedHeight(lines * line + 2 * m_theme.points(verticalPadding));
}

void TalkField::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown) {
        event->ignore(); // they scroll the conversation
        return;
    }
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isReturn) {
        QTextEdit::keyPressEvent(event);
        return;
    }
    if (event->modifiers() & Qt::ShiftModifier)
        textCursor().insertBlock();
    else if (!event->isAutoRepeat())
        emit submitted();
}

void TalkField::inputMethodEvent(QInputMethodEvent *event)
{
    QTextEdit::inputMethodEvent(event);
    viewport()->update();
}

void TalkField::paintEvent(QPaintEvent *event)
{
    QTextEdit::paintEvent(event);
    if (m_composing.isComposing() || !document()->isEmpty())
        return;
    QPainter painter(viewport());
    painter.setFont(font());
    painter.setPen(m_theme.colour(Tone::ink3));
    const QString shown = fontMetrics().elidedText(m_placeholder, Qt::ElideRight, viewport()->width());
    painter.drawText(QPointF(0, m_theme.points(linePitch) * 0.8), shown); // the baseline of its lines
}

// The focus ring belongs to the frame, which a scroll area does not redraw by itself.
void TalkField::focusInEvent(QFocusEvent *event)
{
    QTextEdit::focusInEvent(event);
    update();
}

void TalkField::focusOutEvent(QFocusEvent *event)
{
    QTextEdit::focusOutEvent(event);
    update();
}

} // namespace nimbrelle
