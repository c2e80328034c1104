#pragma once

#include "card/CardState.h"
#include "frame/Failure.h"

namespace nimbrelle {

/// What the card says when the picture of the screen that the user asked for could not be taken or read.
inline CardError captureError(const std::exception &failure)
{
    return {.message = QStringLiteral("截取屏幕失败：") + Failure::shownText(failure)};
}

} // namespace nimbrelle
