#pragma once

#include "platform/FrontApplication.h"

#include <QRectF>

namespace nimbrelle {

/// What lies under the pointer at a moment.
struct PointedWindow {
    enum class Kind {
        other, ///< the bare desktop, a window manager's frame, a window that no window manager knows
        content, ///< what a program draws into a window of its own
        menu, ///< a menu, a list that hangs from a button, a tool tip
        own, ///< a window of this program, the card included
    };

    Kind kind = Kind::other;
    Application application; ///< whose content it is
    QRectF area; ///< of that program's window without its frame; global points, y upward
    bool hasTextCursor = false; ///< the pointer has the shape that programs give it over text

    bool operator==(const PointedWindow &) const = default;
};

class WindowAtPointer {
public:
    virtual ~WindowAtPointer() = default;

    virtual PointedWindow current() const = 0;

    /// Where the window of a program is now, as in PointedWindow; null when it is gone.
    virtual QRectF areaOf(const Application &application) const = 0;

    /// Whether another program has the pointer to itself: a menu is open, the screen is locked, something is
    /// dragged. Also true while a button is held anywhere.
    virtual bool isGrabbed() const = 0;
};

} // namespace nimbrelle
