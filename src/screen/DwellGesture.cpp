#include "screen/DwellGesture.h"

#include "card/Card.h"
#include "frame/ConfigStore.h"
#include "frame/Text.h"
#include "platform/AccessibilityReader.h"
#include "platform/InputMonitor.h"
#include "screen/GestureGuards.h"
#include "screen/HoverGesture.h"
#include "screen/ScreenOCR.h"

#include <QLineF>
#include <QMarginsF>

#include <algorithm>
#include <cmath>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr QMarginsF besideWord{60, 40, 60, 40}; // before its card goes away
constexpr double longestDrift = 6; // while the picture is read
constexpr auto typingPause = 1500ms;
constexpr qsizetype shortestWord = 2;

std::chrono::milliseconds dwellWait(double seconds)
{
    const double clamped = std::isnan(seconds) ? AppConfig().dwellSeconds : std::clamp(seconds, 0.3, 3.0);
    return std::chrono::milliseconds(std::llround(clamped * 1000));
}

} // namespace

DwellGesture::DwellGesture(const GestureParts &parts, const HoverGesture &hover)
    : m_parts(parts)
    , m_hover(hover)
    , m_halfTask(parts.clock, [this](const std::stop_token &) { expectLookup(); })
    , m_dwellTask(parts.clock, [this](std::stop_token stop) { performDwell(stop); })
{
}

void DwellGesture::mouseDown()
{
    m_parts.state.dwellCard = false;
    cancelDwell();
}

void DwellGesture::keyDown()
{
    m_lastKeyDownAt = m_parts.clock.now();
    cancelDwell();
}

void DwellGesture::mouseMoved(QPointF at)
{
    if (m_parts.state.dwellCard && m_parts.card.isVisible())
        followDwellCard(at);
    scheduleDwell();
}

void DwellGesture::followDwellCard(QPointF at)
{
    const auto &word = m_parts.state.lastHoverRect;
    if (m_parts.guards.isOnCard(at)) {
        m_dwellCardTouched = true;
    } else if (!m_dwellCardTouched && !(word && holds(*word + besideWord, at))) {
        m_parts.state = {};
        m_parts.card.hide();
    }
}

void DwellGesture::scheduleDwell()
{
    const AppConfig &config = m_parts.config.config();
    if (!config.dwellLookup) {
        cancelDwell();
        return;
    }
    const auto wait = dwellWait(config.dwellSeconds);
    m_halfTask.schedule(wait / 2);
    m_dwellTask.schedule(wait);
}

void DwellGesture::cancelDwell()
{
    m_halfTask.cancel();
    m_dwellTask.cancel();
}

void DwellGesture::expectLookup() const
{
    if (mayDwell(m_parts.pointer.location()))
        m_parts.lookupIsLikely();
}

void DwellGesture::performDwell(std::stop_token stop)
{
    const QPointF at = m_parts.pointer.location();
    if (mayDwell(at))
        lookUpWord(at, stop);
}

// In the order of their cost.
bool DwellGesture::mayDwell(QPointF at) const
{
    return m_parts.config.config().dwellLookup && !m_hover.isKeyHeld() && m_parts.guards.mayAct()
        && m_parts.pointer.pressedButtons() == 0 && m_parts.pointer.modifiers() == 0 && !isTyping()
        && m_parts.ocr.isAllowed() && !m_parts.guards.isOnCard(at) && m_parts.guards.isInContentArea(at)
        && mayReplaceCard() && !m_parts.guards.isOnLastWord(at);
}

bool DwellGesture::isTyping() const
{
    return m_lastKeyDownAt && m_parts.clock.now() - *m_lastKeyDownAt <= typingPause;
}

// A card that the user opened on purpose is never replaced.
bool DwellGesture::mayReplaceCard() const
{
    return !m_parts.card.isVisible() || m_parts.state.dwellCard;
}

QCoro::Task<> DwellGesture::lookUpWord(QPointF at, std::stop_token stop)
{
    std::optional<ScreenOCR::Result> seen;
    try {
        seen = co_await m_parts.ocr.recognize(at, ScreenOCR::Seek::sureWord, stop);
    } catch (const std::exception &) {
        co_return;
    }
    if (stop.stop_requested() || !seen || characterCount(seen->word.value_or(QString())) < shortestWord
        || QLineF(m_parts.pointer.location(), at).length() >= longestDrift || !mayReplaceCard())
        co_return;
    m_parts.state = {.lastHoverRect = seen->wordRect, .dwellCard = true};
    m_dwellCardTouched = false;
    m_parts.accessibility.beginGesture();
    m_parts.card.lookup(*seen->word, seen->context, at);
}

} // namespace nimbrelle
