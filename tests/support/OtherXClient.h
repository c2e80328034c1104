#pragma once

#include "platform/linux/x11/XClipboard.h"
#include "platform/linux/x11/XInput.h"
#include "support/Hand.h"

#include <xcb/xtest.h>

namespace nimbrelle {

/// Another client of the same X server: the user's hand, and one who owns selections as another program
/// would.
class OtherXClient final : public Hand {
public:
    void moveTo(QPoint pixel) override
    {
        // Ending in a small step of its own, since a warped pointer is no motion.
        post(XCB_MOTION_NOTIFY, 0, pixel - QPoint(2, 0));
        post(XCB_MOTION_NOTIFY, 0, pixel);
    }
    void button(quint8 number, bool isPress) override
    {
        post(isPress ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, number);
    }
    void key(quint32 keysym, bool isPress) override
    {
        post(isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keyboard.keyFor(keysym).value());
    }

    /// Until the server has carried out all of it.
    void sync() { x.reply(xcb_get_input_focus_reply, xcb_get_input_focus(x.get())); }

    XConnection x;
    XKeyboard keyboard{x};
    XClipboard clipboard{x};

private:
    void post(quint8 type, quint8 detail, QPoint at = {})
    {
        xcb_test_fake_input(x.get(), type, detail, XCB_CURRENT_TIME, x.root(), static_cast<qint16>(at.x()),
            static_cast<qint16>(at.y()), 0);
        sync();
    }
};

} // namespace nimbrelle
