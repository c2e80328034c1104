#pragma once

#include "shell/WordListModel.h"
#include "shell/views/IconTable.h"
#include "shell/views/Theme.h"

#include <QHash>
#include <QPixmap>
#include <QStyledItemDelegate>

namespace nimbrelle {

/// Paints the rows of the notebook's lists: the word left, its marks right, the stage always in the last
/// place, so that the column reads down.
class RowPainter : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// `rowHeight` in points.
    RowPainter(const Theme &theme, double rowHeight, const WordListModel &model, QObject *parent);

    void paint(
        QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

private:
    struct Mark {
        RowMark mark;
        QRect place;
    };

    void paintGround(QPainter &painter, const QStyleOptionViewItem &option) const;
    void paintHeading(QPainter &painter, const QRect &place, const QString &title) const;
    void paintTexts(
        QPainter &painter, const QStyleOptionViewItem &option, const ListRow &row, const QRect &room) const;
    void paintMark(QPainter &painter, const Mark &mark) const;
    QList<Mark> placed(const ListRow &row, const QRect &place) const;
    QRect textRoom(const ListRow &row, const QRect &place) const;
    QFont titleFont(bool isSelected) const;

    const Theme &m_theme;
    const double m_rowHeight;
    const WordListModel &m_model;
    mutable QHash<RowMark, QPixmap> m_pixmaps; // of one theme and screen
    mutable double m_pixmapRatio = 0;
};

} // namespace nimbrelle
