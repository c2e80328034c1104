#pragma once

#include "frame/TaskSlot.h"
#include "platform/Modifiers.h"
#include "screen/DoubleTap.h"
#include "screen/GestureParts.h"

#include <QCoro/QCoroTask>

namespace nimbrelle {

class RegionSelector;

/// Tapping the region key twice: the user frames a part of the screen, and its text is translated. The
/// user asked, so its failures are shown.
class RegionGesture {
public:
    RegionGesture(const GestureParts &parts, RegionSelector &region) : m_parts(parts), m_region(region) { }

    void flagsChanged(ModifierFlags mods);
    /// A key or a click between the two taps.
    void breakDoubleTap() { m_doubleTap.reset(); }

    /// Lets the user frame a region now, if any gesture may act.
    void begin();

private:
    void doubleTapped();
    QCoro::Task<> translateRegion(QRectF rect, std::stop_token stop);

    const GestureParts m_parts;
    RegionSelector &m_region;
    DoubleTap m_doubleTap;
    TaskSlot m_regionTask;
};

} // namespace nimbrelle
