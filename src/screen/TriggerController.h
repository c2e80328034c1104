#pragma once

#include "card/Card.h"
#include "frame/TaskSlot.h"
#include "frame/Timestamp.h"
#include "platform/InputMonitor.h"
#include "screen/QuietDelay.h"
#include "screen/ScreenOCR.h"

namespace nimbrelle {

class AccessibilityReader;
class Clock;
class ConfigStore;
class FrontApplication;
class RegionSelector;
class SelectionReader;

/// Watches the mouse and the keyboard in all programs and decides when a card is to appear: for marked text,
/// for a word under a resting pointer, for a word pointed at with the hover key held, and for a frame dragged
/// after a double tap of the region key. A click elsewhere or Esc takes the card away. Main thread only.
class TriggerController : public QObject {
    Q_OBJECT

public:
    /// All that it works with; everything outlives it.
    struct World {
        Clock &clock;
        const ConfigStore &config;
        InputMonitor &input;
        const Pointer &pointer;
        const FrontApplication &front;
        const Screens &screens;
        const ScreenCapture &capture;
        AccessibilityReader &accessibility;
        SelectionReader &selection;
        ScreenOCR &ocr;
        RegionSelector &region;
        Card &card;
    };

    explicit TriggerController(const World &world, QObject *parent = nullptr);
    ~TriggerController() override;

    /// Needs the grant to watch. On a started controller it replaces the monitors.
    void start();
    /// What a gesture has begun goes on.
    void stop();

private:
    void mouseDown(QPointF at);
    void mouseUp(QPointF at, int clickCount);
    void flagsChanged(ModifierFlags mods);
    void mouseMoved(QPointF at);
    void keyDown(Key key);
    void scrolled();

    void followHoverKey(ModifierFlags mods);
    void followRegionKey(ModifierFlags mods);
    void endRegionPress(ModifierFlags mods);
    void beginRegionPress();
    void endHoverHold();
    void breakDoubleTap();

    QCoro::Task<> handleSelection(QPointF at, std::stop_token stop);
    QCoro::Task<std::optional<QString>> contextAround(QPointF at, std::stop_token stop);

    void followDwellCard(QPointF at);
    void scheduleDwell();
    void cancelDwell();
    QCoro::Task<> performDwell(std::stop_token stop);
    bool mayDwell(QPointF at) const;
    bool mayReplaceCard() const;

    void scheduleHover(std::chrono::milliseconds after);
    void cancelHover();
    QCoro::Task<> performHover(std::stop_token stop);

    void startRegionSelection();
    QCoro::Task<> translateRegion(QRectF rect, std::stop_token stop);

    bool isFrontmostExcluded() const;
    bool isInContentArea(QPointF point) const;
    bool isOnCard(QPointF point) const;
    bool isOnLastWord(QPointF point) const;

    const World m_world;
    Card &m_card;

    QList<QMetaObject::Connection> m_monitors;
    std::optional<QPointF> m_mouseDownPoint;
    // Named for the keys that once were fixed; the settings hoverKey and regionKey say which they are now.
    bool m_optionHeld = false;
    std::optional<Timestamp> m_commandPressedAt; // alone, and not released yet
    std::optional<Timestamp> m_lastCommandTap;
    std::optional<QRectF> m_lastHoverRect; // the word last shown by hovering or dwelling
    bool m_dwellCard = false; // the card was opened by dwelling and may go away by itself
    bool m_dwellCardTouched = false; // and then the pointer has been on it
    std::optional<Timestamp> m_lastKeyDownAt;

    QuietDelay m_dwellDelay;
    QuietDelay m_hoverDelay;
    TaskSlot m_selectionTask;
    TaskSlot m_hoverTask;
    TaskSlot m_dwellTask;
    TaskSlot m_regionTask;
};

} // namespace nimbrelle
