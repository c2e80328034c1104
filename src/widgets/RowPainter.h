#pragma once

#include "widgets/IconTable.h"
#include "widgets/Theme.h"

#include <QHash>
#include <QPixmap>
#include <QStyledItemDelegate>

#include <functional>
#include <optional>

namespace nimbrelle {

/// A small picture at the end of a row.
struct RowSign {
    Icon icon;
    Tone tone;
    QString meaning; ///< for its tip
    bool standsLast = false; ///< in the last place, so that a column of them reads down
};

/// What one row shows.
struct RowContent {
    QString title;
    QString detail; ///< a second line; empty for none
    QList<RowSign> signs; ///< from left to right; at most one stands last
    std::optional<qsizetype> count;
    bool isMuted = false;
    bool isHeading = false;
};

/// Paints the rows of a list: the title left, its signs right.
class RowPainter : public QStyledItemDelegate {
    Q_OBJECT

public:
    using RowSource = std::function<RowContent(int row)>;

    /// `rowHeight` in points.
    RowPainter(const Theme &theme, double rowHeight, RowSource rowAt, QObject *parent);

    void paint(
        QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

private:
    struct PlacedSign {
        RowSign sign;
        QRect place;
    };

    void paintGround(QPainter &painter, const QStyleOptionViewItem &option) const;
    void paintHeading(QPainter &painter, const QRect &place, const QString &title) const;
    void paintTexts(QPainter &painter, const QStyleOptionViewItem &option, const RowContent &row,
        const QRect &room) const;
    void paintSign(QPainter &painter, const PlacedSign &placed) const;
    QList<PlacedSign> placeSigns(const RowContent &row, const QRect &place) const;
    QRect textRoom(const RowContent &row, const QRect &place) const;
    QFont titleFont(bool isSelected) const;

    const Theme &m_theme;
    const double m_rowHeight;
    const RowSource m_rowAt;
    mutable QHash<Icon, QPixmap> m_pixmaps; // of one theme and screen
    mutable double m_pixmapRatio = 0;
};

} // namespace nimbrelle
