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
constexpr double aboveAndBelow = 8;
constexpr double beside = 10;
constexpr int frame = 2; // of the sheet, the room of the ring included

} // namespace

TalkField::TalkField(const Theme &theme, const QString &what, const QString &placeholder)
    : m_theme(theme), m_placeholder(placeholder), m_composing(*new ComposingGuard(*this))
{
    setObjectName(u"input"_s);
    setAccessibleName(what);
    setAccessibleDescription(placeholder);
    setProperty("kind", u"talkField"_s);
    setAcceptRichText(false);
    setTabChangesFocus(true);
    setFont(theme.font(TextType::text));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    const int side = theme.points(beside) - frame;
    const int edge = theme.points(aboveAndBelow) - frame;
    setViewportMargins(side, edge, side, edge);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setLinePitch();
    connect(document()->documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged, this,
        &TalkField::fitHeight);
    fitHeight();
}

/// New lines take it over from the one they are broken off.
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
    setFixedHeight(lines * line + 2 * m_theme.points(aboveAndBelow));
}

void TalkField::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown) {
        event->ignore(); // the conversation's
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
    painter.drawText(QPointF(0, m_theme.points(linePitch) * 0.8), shown); // as its lines have their baseline
}

// The ring is the frame's, which a scroll area does not draw anew by itself.
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
