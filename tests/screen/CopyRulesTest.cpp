#include "screen/CopyRules.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Text marked in a window of the program in front.
CopySituation marked()
{
    const Application reader{.bundleID = u"reader"_s, .window = 7};
    const PointedWindow inside{.kind = PointedWindow::Kind::content,
        .application = reader,
        .area = {10, 10, 400, 300},
        .hasTextCursor = true};
    return {.front = reader, .press = inside, .release = inside, .areaAtRelease = inside.area};
}

} // namespace

TEST(CopyRules, CopiesOnlyWhereTextIsLikelyToBeMarkedAndNoHarmIsDone)
{
    EXPECT_TRUE(mayCopy(marked()));
    const std::pair<const char *, void (*)(CopySituation &)> reasons[]{
        {"no program in front", [](CopySituation &now) { now.front.reset(); }},
        {"a terminal", [](CopySituation &now) { now.front->copyShortcut = CopyShortcut::harmful; }},
        {"a modifier held", [](CopySituation &now) { now.held = modifier::shift; }},
        {"a program that hangs", [](CopySituation &now) { now.waited = 300ms; }},
        {"a title bar", [](CopySituation &now) { now.press.kind = PointedWindow::Kind::other; }},
        {"a window of ours", [](CopySituation &now) { now.press.kind = PointedWindow::Kind::own; }},
        {"a panel beside it", [](CopySituation &now) { now.press.application.window = 8; }},
        {"an unknown window",
            [](CopySituation &now) { now.press.application.window = now.front->window = 0; }},
        {"a window that was moved", [](CopySituation &now) { now.areaAtRelease.translate(1, 0); }},
        {"a window that was resized", [](CopySituation &now) { now.areaAtRelease.setWidth(401); }},
        {"an arrow on a slider",
            [](CopySituation &now) { now.press.hasTextCursor = now.release.hasTextCursor = false; }},
    };
    for (const auto &[reason, change] : reasons) {
        CopySituation now = marked();
        change(now);
        EXPECT_FALSE(mayCopy(now)) << reason;
    }
}

TEST(CopyRules, TheTextPointerAtOneEndWillDoAndAProgramThatNeedsTheCopyNeedsNone)
{
    CopySituation now = marked();
    now.release = {}; // it ended over something else
    EXPECT_TRUE(mayCopy(now));
    std::swap(now.press.hasTextCursor, now.release.hasTextCursor);
    EXPECT_TRUE(mayCopy(now));
    now.release.hasTextCursor = false;
    now.front->copyShortcut = CopyShortcut::needed;
    EXPECT_TRUE(mayCopy(now));
    now.areaAtRelease = {};
    EXPECT_FALSE(mayCopy(now));
}

TEST(CopyRules, ALateWriteIsOursByItsTimesOrWhileTheUserHasDoneNothing)
{
    const auto isLate = [](quint32 causedAt, quint32 doneAt, bool hasUserActed) {
        return isLateCopy({.isByProgram = true,
            .hasUserActed = hasUserActed,
            .times = {.causedAt = causedAt, .doneAt = doneAt},
            .copiedAt = 5000});
    };
    EXPECT_TRUE(isLate(5003, 5004, true)) << "caused by the shortcut's keys, whatever came after them";
    EXPECT_FALSE(isLate(6200, 6210, true)) << "the user's own, at once";
    EXPECT_TRUE(isLate(6200, 6500, true)) << "the program hung, and answers in order";
    EXPECT_TRUE(isLate(6200, 6210, false)) << "it tells the time of its waking";
    EXPECT_FALSE(isLate(0, 7000, true)) << "nothing is known";
    EXPECT_TRUE(isLateCopy({.isByProgram = true,
        .hasUserActed = true,
        .times = {.causedAt = 0x2, .doneAt = 0x3},
        .copiedAt = 0xfffffff8}))
        << "the desktop's time has wrapped";
    EXPECT_FALSE(isLateCopy({.times = {.causedAt = 5000, .doneAt = 5000}, .copiedAt = 5000}))
        << "another program's";
}

} // namespace nimbrelle
