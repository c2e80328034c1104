#include "screen/CopyRules.h"

#include <cstdlib>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto patience = 250ms; // a question that is answered at all takes a few
constexpr int oneStroke = 20; // milliseconds from the shortcut's first key to its last
constexpr int longestWork = 200; // milliseconds from an event to the copy, in a program that is well

bool takesHarm(const Application &front, const CopySituation &situation)
{
    return front.copyShortcut == CopyShortcut::harmful
        || (front.bundleID && situation.noCopyBundleIDs.contains(*front.bundleID));
}

bool isMarkedInside(const Application &front, const CopySituation &situation)
{
    const PointedWindow &press = situation.press;
    return press.kind == PointedWindow::Kind::content && press.application.window != 0
        && press.application.window == front.window && press.area == situation.areaAtRelease;
}

bool isTextLikely(const Application &front, const CopySituation &situation)
{
    return front.copyShortcut == CopyShortcut::needed || situation.press.hasTextCursor
        || situation.release.hasTextCursor;
}

} // namespace

bool mayCopy(const CopySituation &situation)
{
    const auto &front = situation.front;
    return front && !takesHarm(*front, situation) && situation.held == 0 && situation.waited < patience
        && isMarkedInside(*front, situation) && isTextLikely(*front, situation);
}

bool isLateCopy(const LateWrite &write)
{
    const auto [causedAt, doneAt] = write.times;
    const auto apart = static_cast<qint32>(causedAt - write.copiedAt);
    const bool isByOurKeys = causedAt != 0 && write.copiedAt != 0 && std::abs(apart) <= oneStroke;
    const bool hasHung = causedAt != 0 && static_cast<qint32>(doneAt - causedAt) > longestWork;
    return write.isByProgram && (isByOurKeys || hasHung || !write.hasUserActed);
}

} // namespace nimbrelle
