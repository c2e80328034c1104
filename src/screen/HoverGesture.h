#pragma once

#include "platform/Modifiers.h"
#include "screen/DebouncedTask.h"
#include "screen/GestureParts.h"

#include <QPointF>

namespace nimbrelle {

/// Holding the hover key and pointing: the word under the pointer is looked up, soon after the key went down
/// and then wherever the pointer pauses. The user asked, so its failures are shown.
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
    void performHover(std::stop_token stop);
    QCoro::Task<> lookUpWord(QPointF at, std::stop_token stop);

    const GestureParts m_parts;
    bool m_hoverKeyHeld = false;
    DebouncedTask m_hoverTask;
};

} // namespace nimbrelle
