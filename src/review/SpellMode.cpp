#include "review/SpellMode.h"

#include <algorithm>

namespace nimbrelle {

SpellMode spellModeForLevel(qint64 level)
{
    return static_cast<SpellMode>(std::clamp<qint64>(level, 0, maxSpellLevel));
}

std::optional<SpellMode> spellModeFromRaw(qint64 value)
{
    if (value < 0 || value > maxSpellLevel)
        return std::nullopt;
    return static_cast<SpellMode>(value);
}

QString label(SpellMode mode)
{
    switch (mode) {
    case SpellMode::copy:
        return QStringLiteral("看一眼再写");
    case SpellMode::fill:
        return QStringLiteral("补字母");
    case SpellMode::chunks:
        return QStringLiteral("按块拼");
    case SpellMode::full:
        return QStringLiteral("完整拼写");
    case SpellMode::dictation:
        return QStringLiteral("听写");
    }
    return {};
}

} // namespace nimbrelle
