#pragma once

#include <QRectF>

#include <functional>
#include <optional>

namespace nimbrelle {

class AccessibilityReader;
class Card;
class Clock;
class ConfigStore;
class GestureGuards;
class KeySender;
class Pointer;
class ScreenOCR;

/// What the gestures share about the card that one of them opened.
struct GestureState {
    /// Screen box of the word that hovering or dwelling last looked up; global points.
    std::optional<QRectF> lastHoverRect;
    /// The card was opened by dwelling: it may go away by itself, and the next dwell may replace it. Every
    /// other gesture clears this, for what the user opens on purpose stays.
    bool dwellCard = false;
};

/// What every gesture works with. All of it outlives the gestures.
struct GestureParts {
    Clock &clock;
    const ConfigStore &config;
    Pointer &pointer;
    KeySender &keys;
    AccessibilityReader &accessibility;
    ScreenOCR &ocr;
    Card &card;
    const GestureGuards &guards;
    GestureState &state;
    /// To be called while a gesture is under way that can end in a look-up, and that may act as things are.
    const std::function<void()> &lookupIsLikely;
};

} // namespace nimbrelle
