#include "screen/GestureGuards.h"

#include "card/Card.h"
#include "frame/ConfigStore.h"
#include "platform/FrontApplication.h"
#include "platform/Screens.h"
#include "screen/GestureParts.h"

#include <QMarginsF>

namespace nimbrelle {

namespace {

constexpr QMarginsF besideCard{4, 4, 4, 4};
constexpr QMarginsF besideWord{2, 2, 2, 2};

} // namespace

bool GestureGuards::mayAct() const
{
    return !isFrontmostExcluded();
}

// This program's own windows are excluded too.
bool GestureGuards::isFrontmostExcluded() const
{
    const auto application = m_parts.front.current();
    if (!application)
        return false;
    return application->bundleID == m_parts.front.ownBundleID()
        || (application->bundleID
            && m_parts.config.config().excludedBundleIDs.contains(*application->bundleID));
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
