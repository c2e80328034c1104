#pragma once

#include "wordbook/WordListModel.h"

#include <QListView>

namespace nimbrelle {

class RowPainter;
class Theme;

/// One of the notebook's lists: painted rows, so that ten thousand of them scroll without a pause. Selection
/// and scroll offset outlive a change of its rows.
class NotebookList : public QListView {
    Q_OBJECT

public:
    /// Heights of rows in points.
    struct Look {
        double rowHeight = 36;
        bool hasHeadings = false;
    };

    NotebookList(const Theme &theme, const QString &name, const QString &what, Look look);

    /// `chosen` need not be among the rows.
    void setRows(const QList<ListRow> &rows, const RowKey &chosen);
    void reveal(const RowKey &key);
    /// Whether some of that row is to be seen.
    bool shows(const RowKey &key) const;
    /// Whether all rows stay where they are when the list grows by `height` at its lower edge.
    bool keepsRowsWhenGrownBy(int height) const;

signals:
    void chosen(const RowKey &key); ///< by the user
    void deleteRequested(const RowKey &key); ///< only of rows that are records

protected:
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    RowKey keyAt(const QModelIndex &index) const;
    QModelIndex shownChoice() const;
    void select(const RowKey &key);

    WordListModel m_model;
    RowPainter *m_painter;
    bool m_isChanging = false; // rows change, and not the user's mind
};

} // namespace nimbrelle
