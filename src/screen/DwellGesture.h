#pragma once

#include "screen/DebouncedTask.h"
#include "screen/GestureParts.h"

#include <QPointF>

namespace nimbrelle {

class HoverGesture;

/// Letting the pointer rest on a word: it is looked up, and the card goes away by itself when the pointer
/// leaves the word, unless the pointer has been on the card. The user did not ask, so its failures are
/// silent.
class DwellGesture {
public:
    DwellGesture(const GestureParts &parts, const HoverGesture &hover);

    void mouseDown();
    void keyDown();
    /// Not called while the hover key is held: the move is HoverGesture's then.
    void mouseMoved(QPointF at);

private:
    void followDwellCard(QPointF at);
    void scheduleDwell();
    void cancelDwell();
    void expectLookup() const;
    void performDwell(std::stop_token stop);
    QCoro::Task<> lookUpWord(QPointF at, std::stop_token stop);
    bool mayDwell(QPointF at) const;
    bool isTyping() const;
    bool mayReplaceCard() const;

    const GestureParts m_parts;
    const HoverGesture &m_hover;
    bool m_dwellCardTouched = false; // the pointer has been on the card that dwelling opened
    std::optional<Timestamp> m_lastKeyDownAt;
    DebouncedTask m_halfTask; // half of the wait is over
    DebouncedTask m_dwellTask;
};

} // namespace nimbrelle
