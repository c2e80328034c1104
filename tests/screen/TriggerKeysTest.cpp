#include "support/GestureStage.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class TriggerHover : public testing::Test, protected GestureStage {
protected:
    TriggerHover() { showWord("reluctant"); }
};

TEST_F(TriggerHover, ReadsTheWordAQuarterOfASecondAfterTheKeyWentDown)
{
    input.hold(modifier::option);
    advance(249ms);
    EXPECT_THAT(card.calls, IsEmpty());
    advance(1ms);
    EXPECT_THAT(card.calls, ElementsAre(QStringLiteral("lookup reluctant | reluctant")));
    EXPECT_EQ(card.anchor, middle);
    input.hold(0);
    EXPECT_TRUE(card.isVisible());
}

TEST_F(TriggerHover, FollowsThePointerWhereItPauses)
{
    input.hold(modifier::option);
    for (int step = 0; step < 5; ++step)
        rest(middle + QPointF(200, step), 199ms);
    EXPECT_THAT(card.calls, IsEmpty());
    advance(1ms);
    EXPECT_EQ(card.calls.size(), 1);
    rest(middle + QPointF(277, 4), 200ms); // still the same word
    EXPECT_EQ(card.calls.size(), 1);
    rest(middle + QPointF(350, 4), 200ms);
    EXPECT_EQ(card.calls.size(), 2);
    input.hold(0);
    input.hold(modifier::option); // a new press may read it again
    advance(250ms);
    EXPECT_EQ(card.calls.size(), 3);
}

TEST_F(TriggerHover, OnlyTheKeyAloneCounts)
{
    configure([](AppConfig &config) { config.hoverKey = ModifierKey::control; });
    for (const ModifierFlags held : {modifier::option, modifier::control | modifier::shift, modifier::all}) {
        input.hold(held);
        advance(1s);
        input.hold(0);
    }
    input.hold(modifier::control); // and one more key before its time is up ends it
    input.hold(modifier::control | modifier::shift);
    advance(1s);
    EXPECT_TRUE(capture.requests.empty());
    input.hold(modifier::control);
    advance(1s);
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(TriggerHover, ReleaseOrTypingEndsItAlsoWhileThePictureIsRead)
{
    recognizer.delay = 300ms;
    input.hold(modifier::option);
    advance(300ms);
    input.hold(0);
    advance(1s);
    input.hold(modifier::option);
    advance(300ms);
    input.type(); // option and a letter: the user is typing
    advance(1s);
    EXPECT_EQ(capture.requests.size(), 2u);
    EXPECT_THAT(card.calls, IsEmpty());
}

TEST_F(TriggerHover, DoesNothingWhereItIsNotWanted)
{
    const auto press = [this] {
        input.hold(modifier::option);
        advance(1s);
        input.hold(0);
    };
    configure([](AppConfig &config) { config.optionHoverOCR = false; });
    press();
    configure([](AppConfig &config) { config.optionHoverOCR = true; });
    front.front->bundleID = front.own;
    press();
    front.front->bundleID = QStringLiteral("reader");
    card.offerTranslation(QStringLiteral("x"), middle);
    card.place = {500, 300, 300, 200}; // under the pointer
    press();
    EXPECT_TRUE(capture.requests.empty());
    card.hide();
    recognizer.lines = {};
    press();
    EXPECT_EQ(card.calls.size(), 1); // no word, no card
    showWord("a");
    screens.screens[0].workArea = {}; // a panel and a single letter are no hindrance
    press();
    EXPECT_EQ(card.calls.last(), QStringLiteral("lookup a | a"));
}

TEST_F(TriggerHover, AnswersADeliberateRequestThatFails)
{
    const auto press = [this] {
        input.hold(modifier::option);
        advance(1s);
        input.hold(0);
    };
    capture.allowed = false;
    press();
    capture.allowed = true;
    capture.failure = QStringLiteral("没有画面");
    press();
    EXPECT_THAT(card.calls,
        ElementsAre(QStringLiteral("error 识别屏幕文字需要「屏幕录制」权限，请在设置里打开。 + settings"),
            QStringLiteral("error 截取屏幕失败：没有画面")));
    EXPECT_EQ(card.anchor, middle);
}

TEST_F(TriggerHover, MovesFeedItInsteadOfDwelling)
{
    recognizer.lines = {};
    input.hold(modifier::option);
    rest(middle, 5s);
    EXPECT_EQ(capture.requests.size(), 1u);
    pointer.held = 0; // the release went to a window of ours
    rest(middle + QPointF(20, 0), 1s);
    showWord("reluctant");
    rest(middle, 1s);
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(TriggerHover, ItsCardDoesNotGoAwayByItself)
{
    input.hold(modifier::option);
    advance(250ms);
    input.hold(0);
    rest({100, 100}, 5s);
    EXPECT_TRUE(card.isVisible());
    EXPECT_EQ(card.calls.size(), 1);
}

class TriggerRegion : public testing::Test, protected GestureStage {
protected:
    void doubleTap(std::chrono::milliseconds held = 100ms, std::chrono::milliseconds gap = 100ms)
    {
        tap(modifier::command, held);
        advance(gap);
        input.hold(modifier::command);
    }
    void letGo()
    {
        input.hold(0);
        advance(1s);
    }
    void frame(const QRectF &rect)
    {
        letGo();
        doubleTap();
        overlay.finish(rect);
    }
};

TEST_F(TriggerRegion, BeginsOnTheSecondPressOfAQuickDoubleTap)
{
    struct Case {
        std::chrono::milliseconds held, gap;
        bool begins;
    };
    const Case cases[]{{50ms, 50ms, true}, {249ms, 349ms, true}, {250ms, 50ms, false}, {50ms, 350ms, false},
        {50ms, 400ms, false}, {300ms, 300ms, false}};
    for (const Case &c : cases) {
        const int before = overlay.opened;
        doubleTap(c.held, c.gap);
        EXPECT_EQ(overlay.opened - before, c.begins ? 1 : 0) << c.held.count() << ' ' << c.gap.count();
        region.cancel();
        letGo();
    }
}

TEST_F(TriggerRegion, AThirdPressIsNoSecondAndALongOneNoFirst)
{
    tap(modifier::command, 300ms);
    doubleTap();
    EXPECT_EQ(overlay.opened, 1);
    input.hold(0);
    input.hold(modifier::command);
    EXPECT_EQ(overlay.opened, 1);
}

TEST_F(TriggerRegion, OtherInputBreaksTheDoubleTap)
{
    const std::function<void()> breaks[]{[this] { input.type(); }, [this] { input.click(middle); }};
    for (const auto &breakIt : breaks) {
        input.hold(modifier::command);
        breakIt();
        tap(modifier::command);
        breakIt();
        input.hold(modifier::command);
        EXPECT_EQ(overlay.opened, 0);
        letGo();
    }
    // Released while another key is down, it was no tap either.
    input.hold(modifier::command);
    input.hold(modifier::command | modifier::shift);
    input.hold(0);
    input.hold(modifier::command);
    EXPECT_EQ(overlay.opened, 0);
}

TEST_F(TriggerRegion, TranslatesWhatTheFrameHolds)
{
    showWord("framed");
    card.offerTranslation(QStringLiteral("x"), middle);
    doubleTap();
    EXPECT_FALSE(card.isVisible());
    overlay.finish(QRectF(300, 200, 400, 100));
    EXPECT_EQ(card.calls.last(), QStringLiteral("translate framed"));
    EXPECT_EQ(card.anchor, QPointF(324, 200));
    doubleTap();
    overlay.finish(std::nullopt);
    EXPECT_EQ(card.calls.size(), 2);
}

TEST_F(TriggerRegion, TellsWhyThereIsNoTranslation)
{
    frame({300, 200, 400, 100});
    capture.failure = QStringLiteral("没有画面");
    frame({300, 200, 400, 100});
    EXPECT_EQ(card.anchor, QPointF(324, 200));
    capture.allowed = false;
    letGo();
    doubleTap();
    EXPECT_THAT(card.calls,
        ElementsAre(QStringLiteral("error 框里没有识别到英文。"),
            QStringLiteral("error 截取屏幕失败：没有画面"),
            QStringLiteral("error 框选翻译需要「屏幕录制」权限，请在设置里打开。 + settings")));
    EXPECT_EQ(card.anchor, middle);
    EXPECT_EQ(overlay.opened, 2);
}

TEST_F(TriggerRegion, DoesNothingWhereItIsNotWanted)
{
    configure([](AppConfig &config) { config.optionRegionTranslate = false; });
    doubleTap();
    letGo();
    configure([](AppConfig &config) {
        config.optionRegionTranslate = true;
        config.regionKey = ModifierKey::shift;
    });
    doubleTap();
    letGo();
    front.front->bundleID = front.own;
    tap(modifier::shift);
    tap(modifier::shift);
    EXPECT_EQ(overlay.opened, 0);
    front.front->bundleID = QStringLiteral("reader");
    tap(modifier::shift);
    tap(modifier::shift);
    EXPECT_EQ(overlay.opened, 1);
}

} // namespace nimbrelle
