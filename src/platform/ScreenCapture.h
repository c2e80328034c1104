#pragma once

#include "frame/Failure.h"
#include "platform/Picture.h"
#include "platform/Screens.h"

#include <QCoro/QCoroTask>

namespace nimbrelle {

/// The session did not give the picture; the text says why.
class CaptureFailure : public Failure {
    using Failure::Failure;
};

class ScreenCapture {
public:
    virtual ~ScreenCapture() = default;

    /// Whether captures can work in this session. Never asks the user.
    virtual bool isAllowed() const = 0;

    /// Whether this program's own windows are in the pictures. Where they can be left out, they are.
    virtual bool showsOwnWindows() const { return false; }

    /// What `screen` shows inside `area`, without this program's own windows where that can be had, and
    /// without the pointer, at the screen's scale or finer. `area` is in points relative to the screen's
    /// top-left corner, y downward. An invalid picture when the screen is gone or `area` lies outside it.
    /// Throws CaptureFailure.
    virtual QCoro::Task<Picture> capture(Screen screen, QRectF area) = 0;
};

} // namespace nimbrelle
