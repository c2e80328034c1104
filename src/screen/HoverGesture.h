#pragma once

#include "frame/TaskSlot.h"
#include "platform/Modifiers.h"
#include "screen/DebouncedTask.h"
#include "screen/GestureParts.h"

#include <QPointF>

namespace nimbrelle {

/// Holding the hover key and pointing: the word under the pointer is looked up, soon after the key went down
/// and then wherever the pointer pauses. A move puts the next look-up off, but does not end the one that
/// runs, or a trembling hand would never get a card. The user asked, so its failures are shown.
class HoverGesture {
public:
    explicit HoverGesture(const GestureParts &parts);

    bool isKeyHeld() const { return m_hoverKeyHeld; }

    void flagsChanged(ModifierFlags mods);
    /// Called only while the key is held.
    void mouseMoved();
    void keyDown();

private:
    void endHold();
    bool mayAct() const;
    void expectLookup() const;
    void performHover();
    bool isReading(QPointF at) const;
    QCoro::Task<> lookUpWord(QPointF at, std::stop_token stop);
    void keepReleaseSilent();

    const GestureParts m_parts;
    bool m_hoverKeyHeld = false;
    bool m_releaseIsSilent = false; // the key's release will open no menu
    std::optional<QPointF> m_readingAt; // while the picture round this place is read
    TaskSlot m_lookupTask;
    DebouncedTask m_hoverTask;
};

} // namespace nimbrelle
