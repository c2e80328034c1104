#pragma once

#include "platform/InputMonitor.h"
#include "platform/linux/x11/XProtocol.h"

#include <optional>

namespace nimbrelle {

/// What a press of a key with this keysym is to us; absent for a modifier or a lock, which is no key press.
std::optional<Key> keyOf(quint32 keysym);

/// Whether a raw motion moves the pointer: a wheel and two fingers on a pad come as motion too, of other
/// axes.
bool movesPointer(const xcb_input_raw_motion_event_t &motion);

/// The X modifier mask in our flags. Locks and the level shifts fall away.
ModifierFlags flagsOf(quint32 modifierMask);

} // namespace nimbrelle
