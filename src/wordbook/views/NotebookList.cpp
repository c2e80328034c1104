#include "wordbook/views/NotebookList.h"

#include "widgets/Controls.h"
#include "widgets/RowPainter.h"

#include <QContextMenuEvent>
#include <QFrame>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <array>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct MarkLook {
    RowMark mark;
    Icon icon;
    Tone tone;
    bool standsLast = false;
};

// From left to right.
constexpr std::array looks{
    MarkLook{.mark = RowMark::wanted, .icon = Icon::starFill, .tone = Tone::gold},
    MarkLook{.mark = RowMark::spelled, .icon = Icon::cursor, .tone = Tone::ink2},
    MarkLook{.mark = RowMark::noted, .icon = Icon::sparkles, .tone = Tone::ink2},
    MarkLook{.mark = RowMark::learning, .icon = Icon::flame, .tone = Tone::accentLine, .standsLast = true},
    MarkLook{.mark = RowMark::resting, .icon = Icon::moon, .tone = Tone::ink2, .standsLast = true},
    MarkLook{.mark = RowMark::mastered, .icon = Icon::capFill, .tone = Tone::ink2, .standsLast = true},
    MarkLook{.mark = RowMark::dormant, .icon = Icon::sleep, .tone = Tone::ink2, .standsLast = true},
    MarkLook{.mark = RowMark::unlocked, .icon = Icon::sealCheck, .tone = Tone::good, .standsLast = true},
};

RowContent contentOf(const ListRow &row)
{
    RowContent content{.title = row.title,
        .detail = row.detail,
        .count = row.count,
        .isMuted = row.isMuted,
        .isHeading = row.isHeading()};
    for (const MarkLook &look : looks)
        if (row.marks.testFlag(look.mark))
            content.signs.append({.icon = look.icon,
                .tone = look.tone,
                .meaning = label(look.mark),
                .standsLast = look.standsLast});
    return content;
}

bool isRecord(const RowKey &key)
{
    return std::holds_alternative<QUuid>(key);
}

} // namespace

NotebookList::NotebookList(const Theme &theme, const QString &name, const QString &what, Look look)
    : m_painter(new RowPainter(
        theme, look.rowHeight, [this](int row) { return contentOf(m_model.rows()[row]); }, this))
{
    setObjectName(name);
    setAccessibleName(what);
    setProperty("kind", u"notebook"_s);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAutoFillBackground(false);
    setModel(&m_model);
    setItemDelegate(m_painter);
    setUniformItemSizes(!look.hasHeadings);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setMouseTracking(true); // rows under the pointer are tinted
    verticalScrollBar()->setSingleStep(theme.points(look.rowHeight));
}

void NotebookList::setRows(const QList<ListRow> &rows, const RowKey &chosen)
{
    const QScopedValueRollback changing(m_isChanging, true);
    QScrollBar *bar = verticalScrollBar();
    const int scrollOffset = bar->value();
    const QModelIndex top = scrollOffset > 0 ? indexAt({0, 0}) : QModelIndex();
    const RowKey anchor = keyAt(top);
    const int offset = top.isValid() ? visualRect(top).top() : 0;
    setAutoScroll(false);
    m_model.setRows(rows);
    select(chosen);
    executeDelayedItemsLayout();
    bar->setValue(scrollOffset);
    if (const auto row = m_model.rowOf(anchor)) // what was at the top stays there
        bar->setValue(bar->value() + visualRect(m_model.index(*row)).top() - offset);
    setAutoScroll(true);
}

void NotebookList::select(const RowKey &key)
{
    const auto row = m_model.rowOf(key);
    const QModelIndex index = row ? m_model.index(*row) : QModelIndex();
    if (index == currentIndex() && (!index.isValid() || selectionModel()->isSelected(index)))
        return;
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
}

void NotebookList::reveal(const RowKey &key)
{
    if (const auto row = m_model.rowOf(key))
        scrollTo(m_model.index(*row));
}

bool NotebookList::shows(const RowKey &key) const
{
    const auto row = m_model.rowOf(key);
    return row && viewport()->rect().intersects(visualRect(m_model.index(*row)));
}

bool NotebookList::keepsRowsWhenGrownBy(int height) const
{
    const QScrollBar *bar = verticalScrollBar();
    return bar->value() <= std::max(0, bar->maximum() - height);
}

RowKey NotebookList::keyAt(const QModelIndex &index) const
{
    return index.isValid() ? m_model.rows()[index.row()].key : RowKey();
}

/// The row that the user sees as chosen. The current one may be another: it is set by mere focus, and nothing
/// shows it.
QModelIndex NotebookList::shownChoice() const
{
    const QModelIndexList selected = selectedIndexes();
    const bool isSeen = !selected.isEmpty() && viewport()->rect().intersects(visualRect(selected.first()));
    return isSeen ? selected.first() : QModelIndex();
}

void NotebookList::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QListView::selectionChanged(selected, deselected);
    if (!m_isChanging && !selected.isEmpty())
        emit chosen(keyAt(selected.indexes().first()));
}

void NotebookList::keyPressEvent(QKeyEvent *event)
{
    const bool moves = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up;
    if (moves && currentIndex().isValid() && selectedIndexes().isEmpty()) { // it came here by Tab
        selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect);
        return;
    }
    // The toolkit's own sequence for deleting has Ctrl+D besides.
    if (event->key() != Qt::Key_Delete || (event->modifiers() & ~Qt::KeypadModifier))
        return QListView::keyPressEvent(event);
    const RowKey key = keyAt(shownChoice());
    if (isRecord(key) && !event->isAutoRepeat()) // a key that is held must not empty the notebook
        emit deleteRequested(key);
}

void NotebookList::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? shownChoice() : indexAt(event->pos());
    const RowKey key = keyAt(index);
    if (!isRecord(key))
        return;
    auto *menu = new QMenu(this);
    menu->setObjectName(u"rowMenu"_s);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(u"删除"_s, this, [this, key] { emit deleteRequested(key); });
    menu->popup(isByKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

} // namespace nimbrelle
