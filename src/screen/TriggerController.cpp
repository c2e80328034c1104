#include "screen/TriggerController.h"

#include "card/Card.h"
#include "platform/SessionLock.h"
#include "screen/RegionSelector.h"
#include "screen/SelectionReader.h"

namespace nimbrelle {

TriggerController::TriggerController(const Parts &parts, QObject *parent)
    : QObject(parent)
    , m_input(parts.input)
    , m_lock(parts.lock)
    , m_reader(parts.selection)
    , m_selector(parts.region)
    , m_lookupIsLikely(parts.lookupIsLikely)
    , m_guards({.config = parts.config,
          .front = parts.front,
          .pointer = parts.pointer,
          .window = parts.window,
          .lock = parts.lock,
          .region = parts.region,
          .screens = parts.screens,
          .card = parts.card,
          .state = m_state})
    , m_parts({.clock = parts.clock,
          .config = parts.config,
          .pointer = parts.pointer,
          .keys = parts.keys,
          .accessibility = parts.accessibility,
          .ocr = parts.ocr,
          .card = parts.card,
          .guards = m_guards,
          .state = m_state,
          .lookupIsLikely = m_lookupIsLikely})
    , m_selection(m_parts, parts.selection)
    , m_hover(m_parts)
    , m_dwell(m_parts, m_hover)
    , m_region(m_parts, parts.region)
{
}

void TriggerController::start()
{
    stop();
    connect(&m_input, &InputMonitor::mousePressed, this, &TriggerController::mouseDown);
    connect(
        &m_input, &InputMonitor::mouseDragged, this, [this](QPointF at) { m_selection.mouseDragged(at); });
    connect(&m_input, &InputMonitor::mouseReleased, this, &TriggerController::mouseUp);
    connect(&m_input, &InputMonitor::modifiersChanged, this, &TriggerController::flagsChanged);
    connect(&m_input, &InputMonitor::mouseMoved, this, &TriggerController::mouseMoved);
    connect(&m_input, &InputMonitor::keyPressed, this, &TriggerController::keyDown);
    connect(&m_input, &InputMonitor::scrolled, this, &TriggerController::scrolled);
    connect(&m_input, &InputMonitor::textMarked, this, [this](QPointF at) { m_selection.textMarked(at); });
    connect(&m_input, &InputMonitor::attentionMoved, this, &TriggerController::attentionMoved);
    connect(&m_lock, &SessionLock::changed, this, &TriggerController::lockChanged);
    m_input.start();
}

void TriggerController::stop()
{
    m_input.stop();
    m_input.disconnect(this);
    m_lock.disconnect(this);
}

void TriggerController::perform(ShortcutAction action)
{
    switch (action) {
    case ShortcutAction::lookUpSelection:
        m_selection.lookUpCurrent();
        break;
    case ShortcutAction::translateRegion:
        m_region.begin();
        break;
    }
}

void TriggerController::mouseDown(QPointF at, int clickCount)
{
    m_selection.mouseDown(at, clickCount);
    m_region.breakDoubleTap();
    m_dwell.mouseDown();
    m_parts.card.hide();
}

void TriggerController::mouseUp(QPointF at, int clickCount)
{
    m_selection.mouseUp(at, clickCount);
}

void TriggerController::attentionMoved()
{
    m_selection.attentionMoved();
    m_dwell.mouseDown();
    m_parts.card.hide();
}

void TriggerController::flagsChanged(ModifierFlags mods)
{
    m_hover.flagsChanged(mods);
    m_region.flagsChanged(mods);
}

void TriggerController::mouseMoved(QPointF at)
{
    if (m_hover.isKeyHeld())
        m_hover.mouseMoved();
    else
        m_dwell.mouseMoved(at);
}

void TriggerController::keyDown(Key key)
{
    m_reader.noteKeyDown();
    m_dwell.keyDown();
    if (key == Key::escape)
        m_parts.card.hide();
    m_hover.keyDown();
    m_region.breakDoubleTap();
}

// What is on the screen would stand above the locked one.
void TriggerController::lockChanged()
{
    if (!m_lock.isLocked())
        return;
    m_selector.cancel();
    m_parts.card.hide();
}

void TriggerController::scrolled()
{
    if (std::holds_alternative<TranslateOffer>(m_parts.card.state()))
        m_parts.card.hide();
}

} // namespace nimbrelle
