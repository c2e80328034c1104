#pragma once

#include "wordbook/WordList.h"

#include <QAbstractListModel>

namespace nimbrelle {

/// The rows of one list for a view.
class WordListModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    const QList<ListRow> &rows() const { return m_rows; }
    /// Absent for a heading and where no such row is.
    std::optional<int> rowOf(const RowKey &key) const;

    /// Signals no more than what differs, so that views keep selection and scroll offset.
    void setRows(const QList<ListRow> &rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    QList<ListRow> m_rows;
};

} // namespace nimbrelle
