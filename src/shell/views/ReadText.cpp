#include "shell/views/ReadText.h"

#include <QAbstractTextDocumentLayout>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QMenu>
#include <QTextBlock>
#include <QTextLayout>
#include <QWheelEvent>

#include <cmath>

namespace nimbrelle {

using namespace Qt::StringLiterals;

ReadText::ReadText(const Theme &theme, Look look, QWidget *parent)
    : QTextEdit(parent), m_theme(theme), m_look(look)
{
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    document()->setUndoRedoEnabled(false);
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QTextCharFormat ReadText::baseFormat() const
{
    QTextCharFormat format;
    format.setFont(m_look.weight ? m_theme.font(m_look.type, *m_look.weight) : m_theme.font(m_look.type));
    format.setForeground(m_theme.colour(m_look.tone));
    return format;
}

void ReadText::setPlain(const QString &text)
{
    setRuns({{text, {}}});
}

void ReadText::setRuns(const QList<StyledRun> &runs)
{
    clear();
    document()->setDefaultFont(baseFormat().font());
    QTextCursor cursor(document());
    QTextBlockFormat block;
    block.setLineHeight(
        m_theme.points(m_look.pitch.value_or(Theme::pitch(m_look.type))), QTextBlockFormat::FixedHeight);
    cursor.setBlockFormat(block);
    for (const StyledRun &run : runs) {
        QTextCharFormat format = baseFormat();
        if (run.style.bold)
            format.setFontWeight(QFont::DemiBold);
        format.setFontItalic(run.style.italic);
        format.setFontStrikeOut(run.style.struck);
        if (run.style.code)
            format.setFontFamilies({u"DejaVu Sans Mono"_s, u"Noto Sans Mono"_s, u"monospace"_s});
        if (!run.style.link.isEmpty())
            format.setForeground(m_theme.colour(Tone::accent));
        cursor.insertText(run.text, format);
    }
    m_measure.reset();
    updateGeometry();
}

void ReadText::mark(qsizetype from, qsizetype length)
{
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(from));
    cursor.setPosition(static_cast<int>(from + length), QTextCursor::KeepAnchor);
    QTextCharFormat format;
    format.setFontWeight(QFont::Bold);
    format.setForeground(m_theme.colour(Tone::accent));
    cursor.mergeCharFormat(format);
    m_measure.reset();
    updateGeometry();
}

QTextDocument &ReadText::measure() const
{
    if (!m_measure) {
        m_measure.reset(document()->clone());
        m_measure->setDocumentMargin(0);
        m_measure->setDefaultTextOption(document()->defaultTextOption());
    }
    return *m_measure;
}

int ReadText::naturalWidth() const
{
    measure().setTextWidth(-1);
    return static_cast<int>(std::ceil(measure().idealWidth())) + 1; // the layout rounds, and would wrap
}

int ReadText::heightForWidth(int width) const
{
    measure().setTextWidth(width);
    return static_cast<int>(std::ceil(measure().size().height()));
}

QSize ReadText::sizeHint() const
{
    const int width = naturalWidth();
    return {width, heightForWidth(width)};
}

QSize ReadText::minimumSizeHint() const
{
    return {0, 0};
}

void ReadText::wheelEvent(QWheelEvent *event)
{
    event->ignore(); // whatever holds us scrolls
}

void ReadText::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu menu(this);
    QAction *copyAction = menu.addAction(u"复制"_s, this, &QTextEdit::copy);
    copyAction->setEnabled(textCursor().hasSelection());
    menu.addAction(u"全选"_s, this, &QTextEdit::selectAll);
    menu.exec(event->globalPos());
}

QString cutToLines(const QString &text, const QFont &font, int width, int lines)
{
    const QString oneLine = text.simplified();
    QTextLayout layout(oneLine, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    int lastStart = 0;
    int count = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (++count == lines)
            lastStart = line.textStart();
        if (count > lines)
            break;
    }
    layout.endLayout();
    if (count <= lines)
        return oneLine;
    return oneLine.left(lastStart)
        + QFontMetrics(font).elidedText(oneLine.mid(lastStart), Qt::ElideRight, width);
}

} // namespace nimbrelle
