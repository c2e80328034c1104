#include "screen/RegionGesture.h"

#include "card/Card.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "platform/AccessibilityReader.h"
#include "platform/InputMonitor.h"
#include "platform/KeySender.h"
#include "screen/CaptureError.h"
#include "screen/GestureGuards.h"
#include "screen/RegionSelector.h"
#include "screen/ScreenOCR.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

// The card stands that far left of its anchor, so that its left edge is in line with the frame's.
constexpr double cardIndent = 24;
const QString noCapture = u"框选翻译需要「屏幕录制」权限，请在设置里打开。"_s;
const QString noText = u"框里没有识别到英文。"_s;

} // namespace

void RegionGesture::flagsChanged(ModifierFlags mods)
{
    const Timestamp now = m_parts.clock.now();
    if (mods != flagOf(m_parts.config.config().regionKey))
        m_doubleTap.release(now, mods == 0);
    else if (m_doubleTap.press(now))
        doubleTapped();
}

void RegionGesture::doubleTapped()
{
    if (!m_parts.config.config().optionRegionTranslate || !m_parts.guards.mayAct())
        return;
    m_parts.keys.tapNothing(); // else the desktop opens its launcher when this second press ends
    begin();
}

void RegionGesture::begin()
{
    if (!m_parts.guards.mayAct())
        return;
    m_parts.state.dwellCard = false;
    m_parts.card.hide();
    if (!m_parts.ocr.isAllowed()) {
        m_parts.card.showError({.message = noCapture, .needsSettings = true}, m_parts.pointer.location());
        return;
    }
    m_region.begin([this](QRectF rect) { translateRegion(rect, m_regionTask.renew()); });
    m_parts.lookupIsLikely();
}

QCoro::Task<> RegionGesture::translateRegion(QRectF rect, std::stop_token stop)
{
    const QPointF anchor(rect.x() + cardIndent, rect.y());
    std::optional<QString> text;
    try {
        text = co_await m_parts.ocr.recognizeText(rect, stop);
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            m_parts.card.showError(captureError(failure), anchor);
        co_return;
    }
    if (stop.stop_requested())
        co_return;
    m_parts.accessibility.beginGesture();
    if (text && !text->isEmpty())
        m_parts.card.showTranslation(*text, anchor);
    else
        m_parts.card.showError({.message = noText}, anchor);
}

} // namespace nimbrelle
