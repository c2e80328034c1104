#include "screen/RegionSelector.h"

#include "platform/InputMonitor.h"
#include "platform/Screens.h"
#include "screen/RegionOverlay.h"

#include <utility>

namespace nimbrelle {

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
    m_previousApp = m_front.current();
    m_onSelect = std::move(onSelect);
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
    if (!std::exchange(m_onSelect, {}))
        return;
    const auto previous = std::exchange(m_previousApp, std::nullopt);
    m_overlay.close();
    if (previous && previous->bundleID != m_front.ownBundleID())
        m_front.activate(*previous);
}

} // namespace nimbrelle
