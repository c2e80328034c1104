#include "screen/RegionDrag.h"

namespace nimbrelle {

namespace {

constexpr double widerThan = 12;
constexpr double higherThan = 8;

} // namespace

void RegionDrag::press(QPointF at)
{
    m_start = m_current = at;
}

void RegionDrag::move(QPointF to)
{
    m_current = to;
}

std::optional<QRectF> RegionDrag::release(QPointF at)
{
    m_current = at;
    const auto frame = rect();
    if (!frame || frame->width() <= widerThan || frame->height() <= higherThan)
        return std::nullopt;
    return frame;
}

std::optional<QRectF> RegionDrag::rect() const
{
    if (!m_start)
        return std::nullopt;
    return QRectF(*m_start, m_current).normalized();
}

} // namespace nimbrelle
