#include "WaylandHand.h"

#include <QElapsedTimer>
#include <QTemporaryFile>

#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <map>
#include <virtual-keyboard-unstable-v1.h>
#include <wlr-virtual-pointer-unstable-v1.h>

namespace nimbrelle {
namespace {

constexpr QByteArrayView keymap = "xkb_keymap {"
                                  "xkb_keycodes { include \"evdev\" };"
                                  "xkb_types { include \"complete\" };"
                                  "xkb_compat { include \"complete\" };"
                                  "xkb_symbols { include \"pc+us\" };"
                                  "};";

/// Of the keyboard above, by what stands on the keys.
std::map<quint32, quint32> keyCodes()
{
    std::map<quint32, quint32> codes{{keysym::escape, KEY_ESC}, {keysym::enter, KEY_ENTER},
        {keysym::tab, KEY_TAB}, {keysym::down, KEY_DOWN}, {keysym::right, KEY_RIGHT},
        {keysym::home, KEY_HOME}, {keysym::space, KEY_SPACE}, {keysym::alt, KEY_LEFTALT},
        {keysym::super, KEY_LEFTMETA}, {keysym::control, KEY_LEFTCTRL}, {keysym::shift, KEY_LEFTSHIFT}};
    const std::pair<QByteArrayView, quint32> rows[]{
        {"1234567890", KEY_1}, {"qwertyuiop", KEY_Q}, {"asdfghjkl", KEY_A}, {"zxcvbnm", KEY_Z}};
    for (const auto &[letters, first] : rows)
        for (quint32 i = 0; i < letters.size(); ++i)
            codes.emplace(letters[i], first + i);
    return codes;
}

quint32 modifierOf(quint32 keysym)
{
    switch (keysym) {
    case keysym::shift:
        return 1;
    case keysym::control:
        return 4;
    case keysym::alt:
        return 8;
    case keysym::super:
        return 64;
    default:
        return 0;
    }
}

quint32 now()
{
    QElapsedTimer since;
    since.start();
    return static_cast<quint32>(since.msecsSinceReference());
}

} // namespace

WaylandHand::WaylandHand()
{
    if (!m_connection.isOpen())
        return;
    auto *pointers =
        m_connection.bind<zwlr_virtual_pointer_manager_v1>(zwlr_virtual_pointer_manager_v1_interface, 1);
    auto *keyboards =
        m_connection.bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface, 1);
    m_pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(pointers, m_connection.seat());
    m_keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(keyboards, m_connection.seat());
    zwlr_virtual_pointer_manager_v1_destroy(pointers);
    zwp_virtual_keyboard_manager_v1_destroy(keyboards);
    QTemporaryFile file;
    file.open();
    file.write(keymap.data(), keymap.size() + 1);
    file.flush();
    zwp_virtual_keyboard_v1_keymap(
        m_keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.handle(), static_cast<quint32>(keymap.size() + 1));
    m_connection.roundTrip();
}

WaylandHand::~WaylandHand()
{
    if (!m_pointer)
        return;
    zwlr_virtual_pointer_v1_destroy(m_pointer);
    zwp_virtual_keyboard_v1_destroy(m_keyboard);
}

// X programs lose clicks that follow a jump, so the last of the way is gone step by step.
void WaylandHand::moveTo(QPoint pixel)
{
    constexpr int steps = 4;
    QRect all;
    for (const WaylandOutput &output : m_connection.outputs())
        all |= output.area;
    const QPoint from = pixel - all.topLeft() - QPoint(2 * steps, 0);
    zwlr_virtual_pointer_v1_motion_absolute(m_pointer, now(), static_cast<quint32>(std::max(from.x(), 0)),
        static_cast<quint32>(from.y()), static_cast<quint32>(all.width()),
        static_cast<quint32>(all.height()));
    zwlr_virtual_pointer_v1_frame(m_pointer);
    for (int i = 0; i < steps; ++i)
        move(from.x() < 0 ? QPoint(i == 0 ? 2 * steps + from.x() : 0, 0) : QPoint(2, 0));
    m_connection.roundTrip();
}

void WaylandHand::move(QPoint by)
{
    zwlr_virtual_pointer_v1_motion(m_pointer, now(), wl_fixed_from_int(by.x()), wl_fixed_from_int(by.y()));
    zwlr_virtual_pointer_v1_frame(m_pointer);
}

void WaylandHand::button(quint8 number, bool isPress)
{
    zwlr_virtual_pointer_v1_button(m_pointer, now(), number == 1 ? BTN_LEFT : BTN_RIGHT,
        isPress ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
    zwlr_virtual_pointer_v1_frame(m_pointer);
    m_connection.roundTrip();
}

void WaylandHand::key(quint32 keysym, bool isPress)
{
    static const std::map<quint32, quint32> codes = keyCodes();
    zwp_virtual_keyboard_v1_key(m_keyboard, now(), codes.at(keysym),
        isPress ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
    if (const quint32 modifier = modifierOf(keysym)) {
        m_held = isPress ? m_held | modifier : m_held & ~modifier;
        zwp_virtual_keyboard_v1_modifiers(m_keyboard, m_held, 0, 0, 0);
    }
    m_connection.roundTrip();
}

} // namespace nimbrelle
