#include "screen/HoverGesture.h"

#include "card/Card.h"
#include "frame/ConfigStore.h"
#include "platform/AccessibilityReader.h"
#include "platform/InputMonitor.h"
#include "platform/KeySender.h"
#include "screen/CaptureError.h"
#include "screen/GestureGuards.h"
#include "screen/ScreenOCR.h"

#include <QLineF>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto pressDelay = 250ms;
constexpr auto moveDelay = 200ms;
constexpr double tremble = 6; // so far off, it is still the same place that is pointed at
const QString noCapture = u"识别屏幕文字需要「屏幕录制」权限，请在设置里打开。"_s;

} // namespace

HoverGesture::HoverGesture(const GestureParts &parts)
    : m_parts(parts), m_hoverTask(parts.clock, [this](const std::stop_token &) { performHover(); })
{
}

void HoverGesture::flagsChanged(ModifierFlags mods)
{
    const bool isHeld = mods == flagOf(m_parts.config.config().hoverKey);
    if (!isHeld) {
        endHold();
    } else if (!m_hoverKeyHeld) {
        m_hoverKeyHeld = true;
        m_releaseIsSilent = false;
        m_parts.state.lastHoverRect.reset();
        m_hoverTask.schedule(pressDelay);
        expectLookup();
    }
}

void HoverGesture::mouseMoved()
{
    m_hoverTask.schedule(moveDelay);
}

void HoverGesture::keyDown()
{
    endHold(); // the held key was part of a shortcut
}

void HoverGesture::endHold()
{
    m_hoverKeyHeld = false;
    m_readingAt.reset();
    m_hoverTask.cancel();
    m_lookupTask.cancel();
}

bool HoverGesture::mayAct() const
{
    return m_parts.config.config().optionHoverOCR && m_parts.guards.mayAct();
}

void HoverGesture::expectLookup() const
{
    if (mayAct() && m_parts.ocr.isAllowed() && !m_parts.guards.isOnCard(m_parts.pointer.location()))
        m_parts.lookupIsLikely();
}

void HoverGesture::performHover()
{
    if (!mayAct())
        return;
    if (m_parts.pointer.modifiers() != flagOf(m_parts.config.config().hoverKey)) {
        endHold(); // the key was released over a window of ours, whose input the monitor leaves out
        return;
    }
    const QPointF at = m_parts.pointer.location();
    if (m_parts.guards.isOnCard(at) || m_parts.guards.isOnLastWord(at) || isReading(at))
        return;
    if (m_parts.ocr.isAllowed())
        lookUpWord(at, m_lookupTask.renew());
    else
        m_parts.card.showError({.message = noCapture, .needsSettings = true}, at);
}

bool HoverGesture::isReading(QPointF at) const
{
    return m_readingAt && QLineF(*m_readingAt, at).length() < tremble;
}

QCoro::Task<> HoverGesture::lookUpWord(QPointF at, std::stop_token stop)
{
    m_readingAt = at;
    std::optional<ScreenOCR::Result> seen;
    try {
        seen = co_await m_parts.ocr.recognize(at, ScreenOCR::Seek::word, stop);
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            m_parts.card.showError(captureError(failure), at);
    }
    if (stop.stop_requested())
        co_return;
    m_readingAt.reset();
    if (!seen || !seen->word)
        co_return;
    m_parts.state = {.lastHoverRect = seen->wordRect, .dwellCard = false};
    m_parts.accessibility.beginGesture();
    m_parts.card.lookup(*seen->word, seen->context, at);
    keepReleaseSilent();
}

// Else the program in front opens its menus at the release: the key was pressed and released alone.
void HoverGesture::keepReleaseSilent()
{
    if (std::exchange(m_releaseIsSilent, true))
        return;
    m_parts.keys.tapNothing();
}

} // namespace nimbrelle
