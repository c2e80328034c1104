#pragma once

namespace nimbrelle {

class Clock;
class ConfigStore;
class Speaker;
class Theme;
class WordStore;

/// What the notebook's views are made with; all of it outlives them.
struct WordbookParts {
    const Theme &theme;
    Clock &clock;
    const ConfigStore &config;
    WordStore &words;
    Speaker &speaker;
};

} // namespace nimbrelle
