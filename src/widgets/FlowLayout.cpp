#include "widgets/FlowLayout.h"

#include <algorithm>
#include <limits>

namespace nimbrelle {

FlowLayout::FlowLayout(int horizontal, int vertical, QWidget *parent)
    : QLayout(parent), m_horizontal(horizontal), m_vertical(vertical)
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem *item)
{
    m_items.emplace_back(item);
}

QLayoutItem *FlowLayout::itemAt(int index) const
{
    const auto position = static_cast<std::size_t>(index);
    return index >= 0 && position < m_items.size() ? m_items[position].get() : nullptr;
}

QLayoutItem *FlowLayout::takeAt(int index)
{
    if (!itemAt(index))
        return nullptr;
    QLayoutItem *item = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return item;
}

std::vector<QRect> FlowLayout::placed(int width) const
{
    std::vector<QRect> places;
    int x = 0;
    int y = 0;
    int rowHeight = 0;
    for (const auto &item : m_items) {
        if (item->isEmpty()) { // hidden; it leaves no gap
            places.emplace_back(QPoint(x, y), QSize(0, 0));
            continue;
        }
        QSize size = item->sizeHint();
        if (size.width() > width) {
            size.setWidth(width);
            if (item->hasHeightForWidth())
                size.setHeight(item->heightForWidth(width));
        }
        if (x > 0 && x + size.width() > width) { // x already holds the spacing
            x = 0;
            y += rowHeight + m_vertical;
            rowHeight = 0;
        }
        places.emplace_back(QPoint(x, y), size);
        x += size.width() + m_horizontal;
        rowHeight = std::max(rowHeight, size.height());
    }
    return places;
}

QSize FlowLayout::extent(const std::vector<QRect> &placed)
{
    QRect all;
    for (const QRect &each : placed)
        all |= each;
    return all.size();
}

int FlowLayout::heightForWidth(int width) const
{
    return extent(placed(width)).height();
}

QSize FlowLayout::sizeHint() const
{
    return extent(placed(std::numeric_limits<int>::max() / 2));
}

void FlowLayout::setGeometry(const QRect &area)
{
    QLayout::setGeometry(area);
    const std::vector<QRect> places = placed(area.width());
    for (std::size_t i = 0; i < places.size(); ++i)
        m_items[i]->setGeometry(places[i].translated(area.topLeft()));
}

} // namespace nimbrelle
