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

TEST(CopyRules, ALateWriteIsOursByItsTimeOrWhileTheUserHasDoneNothing)
{
    const LateWrite late{.isByProgram = true, .writtenAt = 5003, .copiedAt = 5000};
    LateWrite write = late;
    write.hasUserActed = true;
    EXPECT_TRUE(isLateCopy(write)) << "it answers the shortcut, whatever came after that";
    write.writtenAt = 6200;
    EXPECT_FALSE(isLateCopy(write)) << "the user's own";
    write.hasUserActed = false;
    EXPECT_TRUE(isLateCopy(write)) << "a program that tells the time of its waking";
    write = late;
    write.isByProgram = false;
    EXPECT_FALSE(isLateCopy(write));
    EXPECT_TRUE(isLateCopy(
        {.isByProgram = true, .hasUserActed = true, .writtenAt = 0x2, .copiedAt = 0xfffffff8})); // wrapped
    EXPECT_FALSE(isLateCopy({.isByProgram = true, .hasUserActed = true})) << "nothing is known";
}

} // namespace nimbrelle
