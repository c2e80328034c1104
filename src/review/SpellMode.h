#pragma once

#include <QString>

namespace nimbrelle {

/// The rungs of the spelling ladder; the value is the word's spellLevel.
enum class SpellMode { copy, fill, chunks, full, dictation };

inline constexpr qint64 maxSpellLevel = 4;

/// The rung of a level: below 1 is copy, 4 or more is dictation.
SpellMode spellModeForLevel(qint64 level);

/// As the log and the screens name it, such as 补字母.
QString label(SpellMode mode);

} // namespace nimbrelle
