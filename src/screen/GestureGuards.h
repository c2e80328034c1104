#pragma once

#include <QPointF>

namespace nimbrelle {

class Card;
class ConfigStore;
class FrontApplication;
class Pointer;
class RegionSelector;
class Screens;
class SessionLock;
class WindowAtPointer;
struct Application;
struct GestureState;

/// The reasons for a gesture not to act, as they are at the moment of the question. Points are global, origin
/// at the bottom left of the main screen, y upward.
class GestureGuards {
public:
    /// Everything outlives this.
    struct Parts {
        const ConfigStore &config;
        const FrontApplication &front;
        const Pointer &pointer;
        const WindowAtPointer &window;
        const SessionLock &lock;
        const RegionSelector &region;
        const Screens &screens;
        const Card &card;
        const GestureState &state;
    };

    explicit GestureGuards(const Parts &parts) : m_parts(parts) { }

    /// Whether any gesture may act at all; each asks this once it has been recognized, before it reads
    /// anything.
    bool mayAct() const;
    /// The same about a click, at its press or release: the program that gets it has the pointer to itself
    /// because of it, and for a moment longer. That no other has it is to be asked once the moment is over.
    bool mayActOnClick() const;
    bool isPointerGrabbed() const;

    /// Whether the point is on a screen and not on a panel or dock.
    bool isInContentArea(QPointF point) const;

    /// Whether the point is on the visible card or just beside it.
    bool isOnCard(QPointF point) const;

    /// Whether the word at the point was looked up already.
    bool isOnLastWord(QPointF point) const;

private:
    bool isExcluded(const Application &application) const;
    bool isFrontmostExcluded() const;
    bool isPointerElsewhere() const;

    const Parts m_parts;
};

} // namespace nimbrelle
