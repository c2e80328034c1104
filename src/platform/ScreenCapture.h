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

    /// What `screen` shows inside `area`, without any of this program's own windows and without the pointer,
    /// at the screen's scale. `area` is in points relative to the screen's top-left corner, y downward.
    /// An invalid picture when the screen is gone or `area` lies outside it. Throws CaptureFailure.
    virtual QCoro::Task<Picture> capture(Screen screen, QRectF area) = 0;
};

} // namespace nimbrelle
