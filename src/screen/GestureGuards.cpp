#include "screen/GestureGuards.h"

#include "card/Card.h"
#include "frame/ConfigStore.h"
#include "platform/FrontApplication.h"
#include "platform/InputMonitor.h"
#include "platform/Screens.h"
#include "platform/SessionLock.h"
#include "platform/WindowAtPointer.h"
#include "screen/GestureParts.h"
#include "screen/RegionSelector.h"

#include <QMarginsF>

namespace nimbrelle {

namespace {

constexpr QMarginsF besideCard{4, 4, 4, 4};
constexpr QMarginsF besideWord{2, 2, 2, 2};

} // namespace

bool GestureGuards::mayAct() const
{
    return mayActOnClick() && !isPointerGrabbed();
}

bool GestureGuards::isPointerGrabbed() const
{
    return m_parts.pointer.pressedButtons() == 0 && m_parts.window.isGrabbed();
}

bool GestureGuards::mayActOnClick() const
{
    return !m_parts.lock.isLocked() && !m_parts.region.isOpen() && !isFrontmostExcluded()
        && !isPointerElsewhere();
}

// This program's own windows are excluded too, and so is any program that can't be told from an excluded one.
bool GestureGuards::isFrontmostExcluded() const
{
    const auto application = m_parts.front.current();
    if (!application && !m_parts.front.isTold())
        return !m_parts.config.config().excludedBundleIDs.isEmpty();
    return application && (application->bundleID == m_parts.front.ownBundleID() || isExcluded(*application));
}

bool GestureGuards::isExcluded(const Application &application) const
{
    return application.bundleID && m_parts.config.config().excludes(*application.bundleID);
}

// Over a window that must not be read or covered, whichever is in front.
bool GestureGuards::isPointerElsewhere() const
{
    const PointedWindow pointed = m_parts.window.current();
    switch (pointed.kind) {
    case PointedWindow::Kind::own:
        return !isOnCard(m_parts.pointer.location());
    case PointedWindow::Kind::menu:
        return true;
    case PointedWindow::Kind::content:
        return isExcluded(pointed.application);
    case PointedWindow::Kind::other:
        return false;
    }
    return false;
}

bool GestureGuards::isInContentArea(QPointF point) const
{
    const auto screen = screenHolding(m_parts.screens.all(), point);
    return screen && holds(screen->workArea, point);
}

bool GestureGuards::isOnCard(QPointF point) const
{
    return m_parts.card.isVisible() && holds(m_parts.card.frame() + besideCard, point);
}

bool GestureGuards::isOnLastWord(QPointF point) const
{
    const auto &word = m_parts.state.lastHoverRect;
    return word && holds(*word + besideWord, point);
}

} // namespace nimbrelle
