#pragma once

#include "platform/Clipboard.h"
#include "platform/Modifiers.h"
#include "platform/WindowAtPointer.h"

#include <QStringList>

#include <chrono>
#include <optional>

namespace nimbrelle {

/// What is known when text could be fetched by pressing the copy shortcut for the user.
struct CopySituation {
    std::optional<Application> front; ///< it would get the shortcut
    QStringList noCopyBundleIDs; ///< the user's own list, beside CopyShortcut::harmful
    PointedWindow press; ///< what the button went down on
    PointedWindow release; ///< what it came up over
    QRectF areaAtRelease; ///< of the window of the press
    ModifierFlags held = 0;
    std::chrono::milliseconds waited{0}; ///< for what the program was asked before
};

/// Whether text is likely to be marked, and the shortcut does no harm if there is none. The gesture began in
/// the content of the program in front, and moved or resized nothing; the pointer is that of text at one end
/// at least, or the program known to need the shortcut; no modifier would make another shortcut of it; and
/// the program has answered so far, for one that hangs would copy when nobody expects it any more. Never
/// where the program is known to take harm, or the user has listed it.
bool mayCopy(const CopySituation &situation);

/// A write of the clipboard some time after the shortcut was sent and given up.
struct LateWrite {
    bool isByProgram = false; ///< by the one that got the shortcut
    bool hasUserActed = false; ///< since then, so that he may have copied something himself
    WriteTimes times;
    quint32 copiedAt = 0; ///< as KeySender tells it
};

/// Whether it answers our shortcut and is not the user's own copy. It is ours if it was caused by the
/// shortcut's very keys. Many programs tell the time of the newest event that they have read instead; but one
/// that acts long after any event has hung, and a program answers in order, the shortcut first.
bool isLateCopy(const LateWrite &write);

} // namespace nimbrelle
