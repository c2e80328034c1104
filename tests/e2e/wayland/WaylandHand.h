#pragma once

#include "platform/linux/wayland/WaylandConnection.h"
#include "support/Hand.h"

struct zwlr_virtual_pointer_v1;
struct zwp_virtual_keyboard_v1;

namespace nimbrelle {

/// A mouse and a keyboard that the compositor takes for real ones. Programs see the seat change when they
/// come and go, so that one pair should last for all scenes. Places are in the compositor's logical pixels.
class WaylandHand final : public Hand {
public:
    WaylandHand();
    ~WaylandHand() override;

    void moveTo(QPoint pixel) override;
    void button(quint8 number, bool isPress) override;
    void key(quint32 keysym, bool isPress) override;

    WaylandConnection &connection() { return m_connection; }

private:
    void move(QPoint by);

    WaylandConnection m_connection;
    zwlr_virtual_pointer_v1 *m_pointer = nullptr;
    zwp_virtual_keyboard_v1 *m_keyboard = nullptr;
    quint32 m_held = 0; ///< modifiers
};

} // namespace nimbrelle
