#pragma once

#include "frame/AppConfig.h"

namespace nimbrelle {

/// A mask of held modifiers: any of the four flags below, nothing else (no caps lock, number lock, function).
using ModifierFlags = quint32;

namespace modifier {
inline constexpr ModifierFlags shift = 0x20000;
inline constexpr ModifierFlags control = 0x40000;
inline constexpr ModifierFlags option = 0x80000; ///< Alt
inline constexpr ModifierFlags command = 0x100000; ///< Super
inline constexpr ModifierFlags all = shift | control | option | command;
} // namespace modifier

constexpr ModifierFlags flagOf(ModifierKey key)
{
    switch (key) {
    case ModifierKey::option:
        return modifier::option;
    case ModifierKey::command:
        return modifier::command;
    case ModifierKey::control:
        return modifier::control;
    case ModifierKey::shift:
        return modifier::shift;
    }
    return 0;
}

} // namespace nimbrelle
