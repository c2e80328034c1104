#include "screen/TriggerController.h"

#include "frame/ConfigStore.h"
#include "frame/Text.h"
#include "platform/AccessibilityReader.h"
#include "platform/FrontApplication.h"
#include "platform/ScreenCapture.h"
#include "screen/RegionSelector.h"
#include "screen/SelectionKind.h"
#include "screen/SelectionReader.h"

#include <algorithm>
#include <cmath>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr double dragDistance = 4;
constexpr double dwellDrift = 6;
constexpr double cardMargin = 4;
constexpr double wordMargin = 2;
constexpr QSizeF dwellReach{60, 40}; // round the word, before its card goes away
constexpr double regionCardIndent = 24;

constexpr auto selectionDelay = 80ms;
constexpr auto hoverPressDelay = 250ms;
constexpr auto hoverMoveDelay = 200ms;
constexpr auto longestTap = 250ms;
constexpr auto longestTapGap = 350ms;
constexpr auto typingPause = 1500ms;
constexpr qsizetype shortestDwellWord = 2;

double distance(QPointF a, QPointF b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

bool holdsWithin(const QRectF &rect, QSizeF margin, QPointF point)
{
    return holds(rect.adjusted(-margin.width(), -margin.height(), margin.width(), margin.height()), point);
}

std::chrono::milliseconds dwellWait(double seconds)
{
    const double clamped = std::isnan(seconds) ? AppConfig().dwellSeconds : std::clamp(seconds, 0.3, 3.0);
    return std::chrono::milliseconds(std::llround(clamped * 1000));
}

CardError captureError(const std::exception &failure)
{
    return {QStringLiteral("截取屏幕失败：") + Failure::shownText(failure), false};
}

} // namespace

TriggerController::TriggerController(const World &world, QObject *parent)
    : QObject(parent)
    , m_world(world)
    , m_card(world.card)
    , m_dwellDelay(world.clock, [this] { performDwell(m_dwellTask.renew()); })
    , m_hoverDelay(world.clock, [this] { performHover(m_hoverTask.renew()); })
{
}

TriggerController::~TriggerController() = default;

void TriggerController::start()
{
    stop();
    const InputMonitor *input = &m_world.input;
    m_monitors = {
        connect(input, &InputMonitor::mousePressed, this, &TriggerController::mouseDown),
        connect(input, &InputMonitor::mouseReleased, this, &TriggerController::mouseUp),
        connect(input, &InputMonitor::modifiersChanged, this, &TriggerController::flagsChanged),
        connect(input, &InputMonitor::mouseMoved, this, &TriggerController::mouseMoved),
        connect(input, &InputMonitor::keyPressed, this, &TriggerController::keyDown),
        connect(input, &InputMonitor::scrolled, this, &TriggerController::scrolled),
    };
    m_world.input.start();
}

void TriggerController::stop()
{
    m_world.input.stop();
    for (const QMetaObject::Connection &monitor : std::as_const(m_monitors))
        disconnect(monitor);
    m_monitors.clear();
}

void TriggerController::mouseDown(QPointF at)
{
    m_mouseDownPoint = at;
    m_world.selection.noteMouseDown();
    breakDoubleTap();
    m_dwellCard = false;
    cancelDwell();
    m_card.hide();
}

void TriggerController::mouseUp(QPointF at, int clickCount)
{
    if (!m_world.config.config().autoPopupOnSelect || isFrontmostExcluded())
        return;
    const bool wasDrag = m_mouseDownPoint && distance(*m_mouseDownPoint, at) > dragDistance;
    if (wasDrag || clickCount >= 2)
        handleSelection(at, m_selectionTask.renew());
}

void TriggerController::keyDown(Key key)
{
    m_lastKeyDownAt = m_world.clock.now();
    cancelDwell();
    if (key == Key::escape)
        m_card.hide();
    endHoverHold();
    breakDoubleTap();
}

void TriggerController::scrolled()
{
    if (std::holds_alternative<TranslateOffer>(m_card.state()))
        m_card.hide();
}

void TriggerController::mouseMoved(QPointF at)
{
    if (m_optionHeld)
        scheduleHover(hoverMoveDelay);
    else
        followDwellCard(at);
}

void TriggerController::flagsChanged(ModifierFlags mods)
{
    followHoverKey(mods);
    followRegionKey(mods);
}

void TriggerController::followHoverKey(ModifierFlags mods)
{
    const bool isHeld = mods == flagOf(m_world.config.config().hoverKey);
    if (!isHeld) {
        endHoverHold();
    } else if (!m_optionHeld) {
        m_optionHeld = true;
        m_lastHoverRect.reset();
        scheduleHover(hoverPressDelay);
    }
}

void TriggerController::endHoverHold()
{
    if (!std::exchange(m_optionHeld, false))
        return;
    cancelHover();
}

void TriggerController::followRegionKey(ModifierFlags mods)
{
    if (mods == flagOf(m_world.config.config().regionKey))
        beginRegionPress();
    else
        endRegionPress(mods);
}

void TriggerController::endRegionPress(ModifierFlags mods)
{
    if (!m_commandPressedAt)
        return;
    const Timestamp now = m_world.clock.now();
    const auto held = now - *std::exchange(m_commandPressedAt, std::nullopt);
    if (mods == 0 && held < longestTap)
        m_lastCommandTap = now;
    else
        m_lastCommandTap.reset();
}

void TriggerController::beginRegionPress()
{
    if (m_commandPressedAt)
        return;
    const Timestamp now = m_world.clock.now();
    if (m_lastCommandTap && now - *m_lastCommandTap < longestTapGap) {
        m_lastCommandTap.reset();
        startRegionSelection();
    } else {
        m_commandPressedAt = now;
    }
}

void TriggerController::breakDoubleTap()
{
    m_commandPressedAt.reset();
    m_lastCommandTap.reset();
}

// Marking text

QCoro::Task<> TriggerController::handleSelection(QPointF at, std::stop_token stop)
{
    co_await m_world.clock.sleep(selectionDelay, stop);
    if (stop.stop_requested())
        co_return;
    m_world.accessibility.beginGesture();
    const std::optional<SelectionReader::Result> selection = co_await m_world.selection.read(stop);
    if (stop.stop_requested() || !selection)
        co_return;
    m_dwellCard = false; // what opens now stays open
    const SelectionKind kind = SelectionKind::classify(selection->text);
    if (kind.kind == SelectionKind::Kind::passage)
        m_card.offerTranslation(kind.text, at);
    if (kind.kind != SelectionKind::Kind::word)
        co_return;
    std::optional<QString> context = selection->context;
    if (!context)
        context = co_await contextAround(at, stop);
    if (!stop.stop_requested())
        m_card.lookup(kind.text, context, at);
}

QCoro::Task<std::optional<QString>> TriggerController::contextAround(QPointF at, std::stop_token stop)
{
    if (!m_world.capture.isAllowed())
        co_return std::nullopt;
    try {
        const std::optional<ScreenOCR::Result> seen =
            co_await m_world.ocr.recognize(at, ScreenOCR::Seek::contextOnly, stop);
        if (seen && !seen->context.isEmpty())
            co_return seen->context;
    } catch (const std::exception &) { // the word alone will do
    }
    co_return std::nullopt;
}

// Letting the pointer rest

void TriggerController::followDwellCard(QPointF at)
{
    if (m_dwellCard && m_card.isVisible()) {
        if (isOnCard(at)) {
            m_dwellCardTouched = true;
        } else if (!m_dwellCardTouched
            && !(m_lastHoverRect && holdsWithin(*m_lastHoverRect, dwellReach, at))) {
            m_dwellCard = false;
            m_lastHoverRect.reset();
            m_card.hide();
        }
    }
    scheduleDwell();
}

void TriggerController::scheduleDwell()
{
    cancelDwell();
    const AppConfig &config = m_world.config.config();
    if (config.dwellLookup)
        m_dwellDelay.arm(dwellWait(config.dwellSeconds));
}

void TriggerController::cancelDwell()
{
    m_dwellDelay.cancel();
    m_dwellTask.cancel();
}

QCoro::Task<> TriggerController::performDwell(std::stop_token stop)
{
    const QPointF at = m_world.pointer.location();
    if (!mayDwell(at))
        co_return;
    std::optional<ScreenOCR::Result> seen;
    try {
        seen = co_await m_world.ocr.recognize(at, ScreenOCR::Seek::word, stop);
    } catch (const std::exception &) {
        co_return;
    }
    if (stop.stop_requested() || !seen || !seen->word || characterCount(*seen->word) < shortestDwellWord
        || distance(m_world.pointer.location(), at) >= dwellDrift || !mayReplaceCard())
        co_return;
    m_lastHoverRect = seen->wordRect;
    m_dwellCard = true;
    m_dwellCardTouched = false;
    m_world.accessibility.beginGesture();
    m_card.lookup(*seen->word, seen->context, at);
}

// In the order of their cost.
bool TriggerController::mayDwell(QPointF at) const
{
    const bool isTyping = m_lastKeyDownAt && m_world.clock.now() - *m_lastKeyDownAt <= typingPause;
    return m_world.config.config().dwellLookup && !m_optionHeld && !isFrontmostExcluded()
        && m_world.pointer.pressedButtons() == 0 && m_world.pointer.modifiers() == 0 && !isTyping
        && m_world.capture.isAllowed() && !isOnCard(at) && isInContentArea(at) && mayReplaceCard()
        && !isOnLastWord(at);
}

// Dwelling never replaces a card that the user opened on purpose.
bool TriggerController::mayReplaceCard() const
{
    return !m_card.isVisible() || m_dwellCard;
}

// Pointing with the hover key held

void TriggerController::scheduleHover(std::chrono::milliseconds after)
{
    cancelHover();
    m_hoverDelay.arm(after);
}

void TriggerController::cancelHover()
{
    m_hoverDelay.cancel();
    m_hoverTask.cancel();
}

QCoro::Task<> TriggerController::performHover(std::stop_token stop)
{
    if (!m_optionHeld || !m_world.config.config().optionHoverOCR || isFrontmostExcluded())
        co_return;
    if (m_world.pointer.modifiers() != flagOf(m_world.config.config().hoverKey)) {
        endHoverHold(); // the release went to a window of ours, so nobody told
        co_return;
    }
    const QPointF at = m_world.pointer.location();
    if (isOnCard(at) || isOnLastWord(at))
        co_return;
    if (!m_world.capture.isAllowed()) {
        m_card.showError({QStringLiteral("识别屏幕文字需要「屏幕录制」权限，请在设置里打开。"), true}, at);
        co_return;
    }
    std::optional<ScreenOCR::Result> seen;
    try {
        seen = co_await m_world.ocr.recognize(at, ScreenOCR::Seek::word, stop);
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            m_card.showError(captureError(failure), at);
        co_return;
    }
    if (stop.stop_requested() || !m_optionHeld || !seen || !seen->word)
        co_return;
    m_lastHoverRect = seen->wordRect;
    m_dwellCard = false;
    m_world.accessibility.beginGesture();
    m_card.lookup(*seen->word, seen->context, at);
}

// Framing a region

void TriggerController::startRegionSelection()
{
    if (!m_world.config.config().optionRegionTranslate || isFrontmostExcluded())
        return;
    m_dwellCard = false;
    m_card.hide();
    if (!m_world.capture.isAllowed()) {
        m_card.showError({QStringLiteral("框选翻译需要「屏幕录制」权限，请在设置里打开。"), true},
            m_world.pointer.location());
        return;
    }
    m_world.region.begin([this](QRectF rect) { translateRegion(rect, m_regionTask.renew()); });
}

QCoro::Task<> TriggerController::translateRegion(QRectF rect, std::stop_token stop)
{
    const QPointF anchor(rect.x() + regionCardIndent, rect.y());
    std::optional<QString> text;
    try {
        text = co_await m_world.ocr.recognizeText(rect, stop);
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            m_card.showError(captureError(failure), anchor);
        co_return;
    }
    if (stop.stop_requested())
        co_return;
    m_world.accessibility.beginGesture();
    if (text && !text->isEmpty())
        m_card.showTranslation(*text, anchor);
    else
        m_card.showError({QStringLiteral("框里没有识别到英文。"), false}, anchor);
}

// Guards

bool TriggerController::isFrontmostExcluded() const
{
    const auto application = m_world.front.current();
    if (!application)
        return false;
    return application->bundleID == m_world.front.ownBundleID()
        || (application->bundleID
            && m_world.config.config().excludedBundleIDs.contains(*application->bundleID));
}

// Panels and docks are no place for dwelling.
bool TriggerController::isInContentArea(QPointF point) const
{
    const auto screen = screenHolding(m_world.screens.all(), point);
    return screen && holds(screen->workArea, point);
}

bool TriggerController::isOnCard(QPointF point) const
{
    return m_card.isVisible() && holdsWithin(m_card.frame(), {cardMargin, cardMargin}, point);
}

bool TriggerController::isOnLastWord(QPointF point) const
{
    return m_lastHoverRect && holdsWithin(*m_lastHoverRect, {wordMargin, wordMargin}, point);
}

} // namespace nimbrelle
