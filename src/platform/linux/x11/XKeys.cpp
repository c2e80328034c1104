#include "platform/linux/x11/XKeys.h"

namespace nimbrelle {
namespace {

constexpr quint32 escapeKeysym = 0xff1b;
constexpr quint32 modeSwitchKeysym = 0xff7e;
constexpr quint32 numLockKeysym = 0xff7f;

} // namespace

std::optional<Key> keyOf(quint32 keysym)
{
    const bool isModifier = (keysym >= 0xffe1 && keysym <= 0xffee) // shift, control, locks, alt, super, hyper
        || (keysym >= 0xfe01 && keysym <= 0xfe13) // level and group shifts, latches and locks
        || keysym == modeSwitchKeysym || keysym == numLockKeysym;
    if (isModifier)
        return std::nullopt;
    return keysym == escapeKeysym ? Key::escape : Key::other;
}

bool movesPointer(const xcb_input_raw_motion_event_t &motion)
{
    constexpr quint32 bothAxes = 0x3; // every pointing device has x and y as its first two
    return motion.valuators_len > 0 && (*xcb_input_raw_button_press_valuator_mask(&motion) & bothAxes) != 0;
}

ModifierFlags flagsOf(quint32 modifierMask)
{
    return ((modifierMask & 0x01U) ? modifier::shift : 0) | ((modifierMask & 0x04U) ? modifier::control : 0)
        | ((modifierMask & 0x08U) ? modifier::option : 0) | ((modifierMask & 0x40U) ? modifier::command : 0);
}

} // namespace nimbrelle
