#include "screen/RegionSelector.h"

#include "platform/InputMonitor.h"
#include "platform/Screens.h"

#include <utility>

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

RegionSelector::RegionSelector(
    const Screens &screens, const Pointer &pointer, FrontApplication &front, RegionOverlay &overlay)
    : m_screens(screens), m_pointer(pointer), m_front(front), m_overlay(overlay)
{
}

void RegionSelector::begin(std::function<void(QRectF)> onSelect)
{
    cancel();
    const QList<Screen> screens = m_screens.all();
    if (screens.isEmpty())
        return;
    const Screen screen = screenHolding(screens, m_pointer.location()).value_or(screens.first());
    m_previous = m_front.current();
    m_onSelect = std::move(onSelect);
    m_selecting = true;
    m_overlay.open(screen.frame,
        [this, corner = screen.frame.topLeft()](std::optional<QRectF> frame) { finish(corner, frame); });
}

void RegionSelector::finish(QPointF screenCorner, std::optional<QRectF> frame)
{
    const auto onSelect = m_onSelect;
    cancel();
    if (frame && onSelect)
        onSelect(frame->translated(screenCorner));
}

void RegionSelector::cancel()
{
    if (!std::exchange(m_selecting, false))
        return;
    m_onSelect = {};
    const auto previous = std::exchange(m_previous, std::nullopt);
    m_overlay.close();
    if (previous && previous->bundleID != m_front.ownBundleID())
        m_front.activate(*previous);
}

} // namespace nimbrelle
