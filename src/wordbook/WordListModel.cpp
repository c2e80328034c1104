#include "wordbook/WordListModel.h"

#include <algorithm>
#include <array>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array allMarks{RowMark::wanted, RowMark::spelled, RowMark::noted, RowMark::learning,
    RowMark::resting, RowMark::mastered, RowMark::dormant, RowMark::unlocked};

QString spokenText(const ListRow &row)
{
    QStringList parts{row.title};
    if (!row.detail.isEmpty())
        parts.append(row.detail);
    if (row.count)
        parts.append(QString::number(*row.count));
    for (const RowMark mark : allMarks)
        if (row.marks.testFlag(mark))
            parts.append(label(mark));
    return parts.join(u"，"_s);
}

/// Whether it is the same row, though perhaps with other marks. Headings count their rows in their titles.
bool isSameRow(const ListRow &row, const ListRow &other)
{
    return row.key == other.key && (!row.isHeading() || row.title == other.title);
}

} // namespace

std::optional<int> WordListModel::rowOf(const RowKey &key) const
{
    if (std::holds_alternative<std::monostate>(key))
        return std::nullopt;
    const auto found = std::ranges::find(m_rows, key, &ListRow::key);
    if (found == m_rows.cend())
        return std::nullopt;
    return static_cast<int>(found - m_rows.cbegin());
}

void WordListModel::setRows(const QList<ListRow> &rows)
{
    const auto from = std::ranges::mismatch(std::as_const(m_rows), rows, isSameRow).in1 - m_rows.cbegin();
    qsizetype behind = 0; // rows after the part that differs
    while (behind < std::min(m_rows.size(), rows.size()) - from
        && isSameRow(m_rows[m_rows.size() - 1 - behind], rows[rows.size() - 1 - behind]))
        ++behind;
    const auto removed = m_rows.size() - from - behind;
    const auto inserted = rows.size() - from - behind;
    if (removed > 0) {
        beginRemoveRows({}, static_cast<int>(from), static_cast<int>(from + removed - 1));
        m_rows.remove(from, removed);
        endRemoveRows();
    }
    if (inserted > 0) {
        beginInsertRows({}, static_cast<int>(from), static_cast<int>(from + inserted - 1));
        m_rows = rows; // other rows may have changed too, which is signalled below
        endInsertRows();
    }
    if (m_rows == rows && inserted == 0)
        return;
    m_rows = rows;
    if (!rows.isEmpty())
        emit dataChanged(index(0), index(static_cast<int>(rows.size() - 1)));
}

int WordListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant WordListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ListRow &row = m_rows[index.row()];
    if (role == Qt::DisplayRole)
        return row.title;
    if (role == Qt::AccessibleTextRole)
        return spokenText(row);
    return {};
}

Qt::ItemFlags WordListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid() || m_rows[index.row()].isHeading())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

} // namespace nimbrelle
