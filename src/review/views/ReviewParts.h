#pragma once

namespace nimbrelle {

class Clock;
class ConfigStore;
class ReviewSession;
class Speaker;
class Theme;
class WordStore;

/// What the review screens are made with; all of it outlives them.
struct ReviewParts {
    const Theme &theme;
    ReviewSession &session;
    WordStore &words;
    const ConfigStore &config;
    Speaker &speaker;
    Clock &clock;
};

/// In points.
inline constexpr double reviewMargin = 40;
inline constexpr double stripHeight = 52;

} // namespace nimbrelle
