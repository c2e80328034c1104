#include "widgets/ReadText.h"

#include <QAbstractTextDocumentLayout>
#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QFrame>
#include <QMenu>
#include <QTextLayout>
#include <QWheelEvent>

#include <algorithm>
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
    // A mere click leaves the keyboard where the user types.
    connect(this, &QTextEdit::copyAvailable, this, [this](bool hasSelection) {
        if (hasSelection)
            setFocus(Qt::MouseFocusReason);
    });
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setOnMiddle();
}

double ReadText::pitch() const
{
    return m_look.pitch.value_or(Theme::pitch(m_look.line.value_or(m_look.type)));
}

/// A line of fixed height has its baseline at four fifths, which is lower than Han letters need to stand on
/// its middle, as the icons and capsules beside it do.
void ReadText::setOnMiddle()
{
    const double middleOfLetters = 0.38 * Theme::size(m_look.line.value_or(m_look.type));
    const int tooLow = m_theme.points((0.8 - 0.5) * pitch() - middleOfLetters);
    setViewportMargins(0, -tooLow, 0, tooLow);
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

QTextCharFormat ReadText::formatOf(const TextStyle &style) const
{
    QTextCharFormat format = baseFormat();
    if (style.bold)
        format.setFontWeight(QFont::DemiBold);
    format.setFontItalic(style.italic);
    format.setFontStrikeOut(style.struck);
    if (style.code)
        format.setFontFamilies({u"DejaVu Sans Mono"_s, u"Noto Sans Mono"_s, u"monospace"_s});
    if (!style.link.isEmpty())
        format.setForeground(m_theme.colour(Tone::accent));
    return format;
}

void ReadText::setRuns(const QList<StyledRun> &runs)
{
    document()->setDefaultFont(baseFormat().font());
    QTextCursor cursor(document());
    cursor.beginEditBlock(); // or the text would be laid out at each step
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
    write(cursor, runs);
    setPitches(document()->begin());
    cursor.endEditBlock();
    m_runs = runs;
}

namespace {

template <class Sequence> qsizetype lengthOfSameBeginning(const Sequence &a, const Sequence &b)
{
    return std::mismatch(a.cbegin(), a.cend(), b.cbegin(), b.cend()).first - a.cbegin();
}

bool hasReturn(const StyledRun &run)
{
    return run.text.contains(u'\r'); // takes no place of its own in a document
}

} // namespace

void ReadText::growTo(const QList<StyledRun> &runs)
{
    if (runs == m_runs)
        return;
    if (m_runs.isEmpty() || std::ranges::any_of(runs, hasReturn))
        return setRuns(runs);
    const qsizetype whole = lengthOfSameBeginning(m_runs, runs);
    qsizetype kept = 0;
    for (qsizetype i = 0; i < whole; ++i)
        kept += runs[i].text.size();
    QList<StyledRun> rest = runs.mid(whole);
    if (!rest.isEmpty() && whole < m_runs.size() && rest.first().style == m_runs[whole].style) {
        const qsizetype same = lengthOfSameBeginning(m_runs[whole].text, rest.first().text);
        kept += same;
        rest.first().text.remove(0, same);
    }
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(kept));
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    const QTextBlock first = cursor.block();
    write(cursor, rest);
    setPitches(first);
    m_runs = runs;
}

void ReadText::write(QTextCursor &cursor, const QList<StyledRun> &runs)
{
    for (const StyledRun &run : runs)
        cursor.insertText(run.text, formatOf(run.style));
    forgetMeasure();
}

void ReadText::setPitches(QTextBlock from)
{
    for (QTextBlock block = from; block.isValid(); block = block.next()) {
        const bool isEmpty = block.length() == 1;
        QTextBlockFormat format;
        format.setLineHeight(
            m_theme.points(isEmpty ? m_look.gap.value_or(pitch()) : pitch()), QTextBlockFormat::FixedHeight);
        QTextCursor(block).setBlockFormat(format);
    }
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
    forgetMeasure();
}

void ReadText::forgetMeasure()
{
    m_measure.reset();
    m_natural = {};
    m_heights.clear();
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

/// A layout asks again and again, and each answer costs as much as to show the text.
QSize ReadText::naturalSize() const
{
    if (m_natural.isEmpty()) {
        measure().setTextWidth(-1);
        m_natural = {
            static_cast<int>(std::ceil(measure().idealWidth())) + 1, // the layout rounds, and would wrap
            static_cast<int>(std::ceil(measure().size().height()))};
    }
    return m_natural;
}

int ReadText::naturalWidth() const
{
    return naturalSize().width();
}

int ReadText::heightForWidth(int width) const
{
    if (width >= naturalWidth())
        return m_natural.height();
    const auto known = m_heights.constFind(width);
    if (known != m_heights.constEnd())
        return *known;
    measure().setTextWidth(width);
    return *m_heights.insert(width, static_cast<int>(std::ceil(measure().size().height())));
}

QSize ReadText::sizeHint() const
{
    return naturalSize();
}

QSize ReadText::minimumSizeHint() const
{
    return {0, 0};
}

bool ReadText::event(QEvent *event)
{
    // For the toolkit both are about scroll bars, which we do not have, and cost as much as to make the text.
    const bool isResized = event->type() == QEvent::Resize;
    if (!isResized && event->type() != QEvent::StyleChange)
        return QTextEdit::event(event);
    if (isResized)
        viewport()->setGeometry(rect().marginsRemoved(viewportMargins()));
    return QFrame::event(event);
}

void ReadText::wheelEvent(QWheelEvent *event)
{
    event->ignore(); // whatever holds us scrolls
}

void ReadText::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy) || event->matches(QKeySequence::SelectAll))
        QTextEdit::keyPressEvent(event);
    else
        event->ignore(); // the window's
}

void ReadText::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this); // not awaited, for an answer may take the text away meanwhile
    menu->setObjectName(u"textMenu"_s);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction *copyAction = menu->addAction(u"复制"_s, this, &QTextEdit::copy);
    copyAction->setEnabled(textCursor().hasSelection());
    menu->addAction(u"全选"_s, this, &QTextEdit::selectAll);
    menu->popup(event->globalPos());
}

ReadText *makeReadText(const Theme &theme, const QString &name, const QString &what, const QString &text,
    const ReadText::Look &look, QWidget *parent)
{
    auto *view = new ReadText(theme, look, parent);
    view->setObjectName(name);
    view->setAccessibleName(what);
    view->setPlain(text);
    return view;
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
