#pragma once

#include "platform/InputMonitor.h"
#include "platform/ShortcutAction.h"
#include "screen/DwellGesture.h"
#include "screen/GestureGuards.h"
#include "screen/HoverGesture.h"
#include "screen/RegionGesture.h"
#include "screen/SelectionGesture.h"

namespace nimbrelle {

class FrontApplication;
class KeySender;
class Screens;
class SessionLock;
class WindowAtPointer;

/// Watches the mouse and the keyboard in all programs and hands each event to the gestures that may mean a
/// look-up. A click elsewhere or Esc takes the card away, and so does the session's lock. Main thread only.
class TriggerController : public QObject {
    Q_OBJECT

public:
    /// Everything outlives this.
    struct Parts {
        Clock &clock;
        const ConfigStore &config;
        InputMonitor &input;
        Pointer &pointer;
        KeySender &keys;
        const FrontApplication &front;
        const WindowAtPointer &window;
        const SessionLock &lock;
        const Screens &screens;
        AccessibilityReader &accessibility;
        SelectionReader &selection;
        ScreenOCR &ocr;
        RegionSelector &region;
        Card &card;
        /// A gesture is under way that can end in a look-up: what can be done for it beforehand may begin.
        std::function<void()> lookupIsLikely;
    };

    explicit TriggerController(const Parts &parts, QObject *parent = nullptr);

    /// Subscribes to the input; without the grant to watch, none comes. A second start changes nothing.
    void start();
    /// Unsubscribes. What a gesture has begun goes on.
    void stop();

    /// A key of the desktop asked for it. The settings that switch gestures on and off mean others.
    void perform(ShortcutAction action);

private:
    void mouseDown(QPointF at, int clickCount);
    void mouseUp(QPointF at, int clickCount);
    void attentionMoved();
    void flagsChanged(ModifierFlags mods);
    void mouseMoved(QPointF at);
    void keyDown(Key key);
    void scrolled();
    void lockChanged();

    InputMonitor &m_input;
    const SessionLock &m_lock;
    SelectionReader &m_reader;
    RegionSelector &m_selector;
    const std::function<void()> m_lookupIsLikely;
    GestureState m_state;
    const GestureGuards m_guards;
    const GestureParts m_parts;
    SelectionGesture m_selection;
    HoverGesture m_hover;
    DwellGesture m_dwell;
    RegionGesture m_region;
};

} // namespace nimbrelle
