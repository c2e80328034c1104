#pragma once

#include "platform/InputMonitor.h"

#include <optional>

namespace nimbrelle {

/// What a press of a key with this keysym is to us; absent for a modifier or a lock, which is no key press.
std::optional<Key> keyOf(quint32 keysym);

/// The X modifier mask in our flags. Locks and the level shifts fall away.
ModifierFlags flagsOf(quint32 modifierMask);

} // namespace nimbrelle
