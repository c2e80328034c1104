#include "review/SpellMode.h"

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

SpellMode spellModeForLevel(qint64 level)
{
    return static_cast<SpellMode>(std::clamp<qint64>(level, 0, maxSpellLevel));
}

QString label(SpellMode mode)
{
    switch (mode) {
    case SpellMode::copy:
        return u"看一眼再写"_s;
    case SpellMode::fill:
        return u"补字母"_s;
    case SpellMode::chunks:
        return u"按块拼"_s;
    case SpellMode::full:
        return u"完整拼写"_s;
    case SpellMode::dictation:
        return u"听写"_s;
    }
    return {};
}

} // namespace nimbrelle
