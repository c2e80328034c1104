#include "widgets/RowPainter.h"

#include "widgets/Controls.h"
#include "widgets/Icons.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <ranges>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

// In points.
constexpr double side = 8; // from the list's edge to the ground of a row
constexpr double inset = 18; // to what it says
constexpr double signSize = 16;
constexpr double signStep = 22;
constexpr double headingHeight = 34;

QString shownCount(const RowContent &row)
{
    return row.count ? QString::number(*row.count) : QString();
}

/// Up to the list's own edge, below a scroll bar too, so that a list that scrolls looks no different.
QRect wholeRow(const QStyleOptionViewItem &option)
{
    QRect row = option.rect;
    if (option.widget)
        row.setRight(option.widget->rect().right());
    return row;
}

} // namespace

RowPainter::RowPainter(const Theme &theme, double rowHeight, RowSource rowAt, QObject *parent)
    : QStyledItemDelegate(parent), m_theme(theme), m_rowHeight(rowHeight), m_rowAt(std::move(rowAt))
{
}

QSize RowPainter::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const
{
    const bool isHeading = m_rowAt(index.row()).isHeading;
    return {1, m_theme.points(isHeading ? headingHeight : m_rowHeight)};
}

QFont RowPainter::titleFont(bool isSelected) const
{
    return m_theme.font(TextType::reading, isSelected ? QFont::DemiBold : QFont::Normal);
}

QList<RowPainter::PlacedSign> RowPainter::placeSigns(const RowContent &row, const QRect &place) const
{
    const int size = m_theme.points(signSize);
    const int top = place.top() + (place.height() - size) / 2;
    const int last = place.right() + 1 - m_theme.points(inset) - size;
    int x = last;
    QList<PlacedSign> placed;
    for (const RowSign &sign : row.signs | std::views::reverse) {
        if (!sign.standsLast)
            x -= m_theme.points(signStep);
        placed.append({.sign = sign, .place = QRect(sign.standsLast ? last : x, top, size, size)});
    }
    return placed;
}

QRect RowPainter::textRoom(const RowContent &row, const QRect &place) const
{
    QRect room = place.adjusted(m_theme.points(inset), 0, -m_theme.points(inset), 0);
    for (const PlacedSign &placed : placeSigns(row, place))
        room.setRight(std::min(room.right(), placed.place.left() - m_theme.points(8)));
    if (row.count)
        room.setRight(place.right() - m_theme.points(inset + signStep + 24));
    return room;
}

void RowPainter::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const RowContent row = m_rowAt(index.row());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (row.isHeading) {
        paintHeading(*painter, wholeRow(option), row.title);
    } else {
        paintGround(*painter, option);
        paintTexts(*painter, option, row, textRoom(row, wholeRow(option)));
        for (const PlacedSign &placed : placeSigns(row, wholeRow(option)))
            paintSign(*painter, placed);
    }
    painter->restore();
}

void RowPainter::paintGround(QPainter &painter, const QStyleOptionViewItem &option) const
{
    const int edge = m_theme.points(side);
    QRectF ground = QRectF(wholeRow(option)).adjusted(edge, 0, -edge, 0);
    const double radius = m_theme.points(7);
    painter.setPen(Qt::NoPen);
    if (option.state & QStyle::State_Selected)
        painter.setBrush(m_theme.colour(Tone::select));
    else if (option.state & QStyle::State_MouseOver)
        painter.setBrush(m_theme.colour(Tone::ink, 0.04));
    else
        painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(ground, radius, radius);
    const auto byKeyboard = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    if ((option.state & byKeyboard) != byKeyboard)
        return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_theme.colour(Tone::accentLine), 2));
    painter.drawRoundedRect(ground.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
}

void RowPainter::paintHeading(QPainter &painter, const QRect &place, const QString &title) const
{
    painter.setFont(m_theme.font(TextType::small, QFont::DemiBold));
    painter.setPen(m_theme.colour(Tone::ink2));
    painter.drawText(place.adjusted(m_theme.points(inset), m_theme.points(6), 0, 0),
        Qt::AlignVCenter | Qt::TextSingleLine, title);
}

void RowPainter::paintTexts(
    QPainter &painter, const QStyleOptionViewItem &option, const RowContent &row, const QRect &room) const
{
    const auto draw = [&](const QFont &font, Tone tone, const QRect &place, const QString &text, int align) {
        painter.setFont(font);
        painter.setPen(m_theme.colour(tone));
        painter.drawText(place, align | Qt::AlignVCenter | Qt::TextSingleLine,
            QFontMetrics(font).elidedText(text, Qt::ElideRight, place.width()));
    };
    const bool isSelected = option.state & QStyle::State_Selected;
    const QFont font = titleFont(isSelected);
    const Tone tone = row.isMuted && !isSelected ? Tone::ink3 : Tone::ink;
    if (row.detail.isEmpty()) {
        draw(font, tone, room, row.title, Qt::AlignLeft);
    } else {
        const QRect lines = room.adjusted(0, m_theme.points(6), 0, -m_theme.points(6));
        draw(font, tone, QRect(lines.topLeft(), QSize(lines.width(), lines.height() / 2)), row.title,
            Qt::AlignLeft);
        draw(m_theme.font(TextType::small), Tone::ink2, lines.adjusted(0, lines.height() / 2, 0, 0),
            row.detail, Qt::AlignLeft);
    }
    if (!row.count)
        return;
    QRect place = wholeRow(option);
    place.setRight(wholeRow(option).right() - m_theme.points(inset + signStep));
    place.setLeft(place.right() - m_theme.points(24));
    draw(m_theme.font(TextType::small), Tone::ink2, place, shownCount(row), Qt::AlignRight);
}

void RowPainter::paintSign(QPainter &painter, const PlacedSign &placed) const
{
    const double ratio = painter.device()->devicePixelRatioF();
    if (m_pixmapRatio != ratio) {
        m_pixmaps.clear();
        m_pixmapRatio = ratio;
    }
    const RowSign &sign = placed.sign;
    QPixmap &pixmap = m_pixmaps[sign.icon];
    if (pixmap.isNull())
        pixmap = iconPixmap(sign.icon, placed.place.width(), ratio, m_theme.colour(sign.tone));
    painter.drawPixmap(placed.place.topLeft(), pixmap);
}

/// A sign says what it means, and a row what was cut off it.
bool RowPainter::helpEvent(
    QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return false;
    const RowContent row = m_rowAt(index.row());
    QString tip;
    for (const PlacedSign &placed : placeSigns(row, wholeRow(option)))
        if (placed.place.adjusted(-4, -4, 4, 4).contains(event->pos()))
            tip = placed.sign.meaning;
    const QFontMetrics metrics(titleFont(option.state & QStyle::State_Selected));
    if (tip.isEmpty() && metrics.horizontalAdvance(row.title) > textRoom(row, wholeRow(option)).width())
        tip = row.title;
    QToolTip::showText(event->globalPos(), tip.toHtmlEscaped(), view);
    return true;
}

} // namespace nimbrelle
