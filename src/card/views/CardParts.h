#pragma once

class QWidget;

namespace nimbrelle {

class CardController;
class Speaker;
class Theme;
class WordStore;

/// What the card's views need; all of it outlives them.
struct CardParts {
    const Theme &theme;
    CardController &controller;
    WordStore &words;
    Speaker &speaker;
};

/// The content of the card in one state. The width is in device-independent pixels; the height follows from
/// it.
struct CardPage {
    QWidget *body = nullptr; ///< scrolls where the screen is too low
    QWidget *footer = nullptr; ///< stays in view below the body; null for none
    int width = 0;
};

/// In points.
inline constexpr double cardWidth = 340;
inline constexpr double cardMargin = 14;

} // namespace nimbrelle
