#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class HoverGestureTest : public testing::Test, protected GestureStage {
protected:
    HoverGestureTest()
    {
        showWord(u"a"_s); // a single letter on a panel, as dwelling would not read it
        screens.screens[0].workArea = {};
    }

    void hover(ModifierFlags keys = modifier::option) { tap(keys, 1s); }
};

TEST_F(HoverGestureTest, ReadsTheWordAQuarterOfASecondAfterThePressAndItsCardStays)
{
    card.place = {600, 350, 100, 100}; // hidden, it is not in the way
    input.hold(modifier::option);
    advance(249ms);
    EXPECT_TRUE(card.calls.isEmpty());
    advance(1ms);
    input.hold(0);
    rest({100, 100}, 5s);
    EXPECT_EQ(card.calls, QStringList{u"lookup a | a"_s});
    EXPECT_EQ(card.anchor, middle);
    EXPECT_TRUE(card.isVisible());
    EXPECT_EQ(accessibility.gestures, 1);
}

TEST_F(HoverGestureTest, TheKeysReleaseOpensNoMenuAfterALookupAndStaysTheUsersElse)
{
    input.hold(modifier::option);
    advance(249ms);
    EXPECT_EQ(keys.taps, 0);
    advance(1ms);
    rest(middle + QPointF(200, 0), 200ms);
    EXPECT_EQ(card.calls.size(), 2);
    EXPECT_EQ(keys.taps, 1) << "once a press";
    input.hold(0);
    recognizer.lines = {};
    hover();
    EXPECT_EQ(keys.taps, 1);
    showWord(u"a"_s);
    hover();
    EXPECT_EQ(keys.taps, 2);
}

TEST_F(HoverGestureTest, ALookupIsLikelyFromThePressOnWhereItCanCome)
{
    hover(modifier::option | modifier::shift);
    capture.allowed = false;
    hover();
    capture.allowed = true;
    card.place = {600, 350, 100, 100};
    card.offerTranslation(u"x"_s, middle);
    hover();
    EXPECT_EQ(likely, 0);
    card.hide();
    input.hold(modifier::option);
    EXPECT_EQ(likely, 1);
    input.move(middle + QPointF(200, 0));
    EXPECT_EQ(likely, 1);
}

TEST_F(HoverGestureTest, FollowsThePointerWhereItPauses)
{
    input.hold(modifier::option);
    for (int step = 0; step < 5; ++step)
        rest(middle + QPointF(200, step), 199ms);
    EXPECT_TRUE(card.calls.isEmpty());
    advance(1ms);
    EXPECT_EQ(card.calls.size(), 1);
    rest(middle + QPointF(277, 4), 200ms); // still the same word
    EXPECT_EQ(card.calls.size(), 1);
    rest(middle + QPointF(350, 4), 200ms);
    EXPECT_EQ(card.calls.size(), 2);
    card.place = {100, 100, 300, 200};
    rest({403, 200}, 200ms); // just beside the card
    EXPECT_EQ(card.calls.size(), 2);
    input.hold(0);
    pointer.at = middle + QPointF(350, 4);
    hover(); // a new press may read the word again
    EXPECT_EQ(card.calls.size(), 3);
}

TEST_F(HoverGestureTest, OnlyTheKeyAloneCounts)
{
    configure([](AppConfig &config) { config.hoverKey = ModifierKey::control; });
    hover(modifier::option);
    hover(modifier::control | modifier::shift);
    input.hold(modifier::control); // and one more key before its time is up ends it
    hover(modifier::control | modifier::shift);
    EXPECT_TRUE(capture.requests.empty());
    hover(modifier::control);
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(HoverGestureTest, ReleaseOrTypingEndsItAlsoWhileThePictureIsRead)
{
    recognizer.delay = 300ms;
    tap(modifier::option, 300ms);
    advance(1s);
    input.hold(modifier::option);
    advance(300ms);
    input.type(); // a shortcut with the key
    advance(1s);
    EXPECT_EQ(capture.requests.size(), 2u);
    EXPECT_TRUE(card.calls.isEmpty());
}

TEST_F(HoverGestureTest, ATremblingHandDoesNotEndTheRecognition)
{
    recognizer.delay = 500ms;
    input.hold(modifier::option);
    advance(250ms);
    for (const double x : {1, 0, 2}) // one of them long enough for a new look-up
        rest(middle + QPointF(x, 0), x == 0 ? 210ms : 100ms);
    EXPECT_EQ(capture.requests.size(), 1u);
    advance(90ms);
    EXPECT_EQ(card.calls, QStringList{u"lookup a | a"_s});
    rest(middle + QPointF(200, 0), 200ms);
    rest(middle + QPointF(300, 0), 200ms); // a pause at another place replaces what is still read
    advance(1s);
    EXPECT_EQ(capture.requests.size(), 3u);
    EXPECT_EQ(card.calls.size(), 2);
    EXPECT_EQ(card.anchor, middle + QPointF(300, 0));
}

TEST_F(HoverGestureTest, AnswersADeliberateRequestThatFails)
{
    capture.allowed = false;
    hover();
    capture.allowed = true;
    capture.failure = u"没有画面"_s;
    hover();
    EXPECT_EQ(card.calls,
        (QStringList{u"error 识别屏幕文字需要「屏幕录制」权限，请在设置里打开。 + settings"_s,
            u"error 截取屏幕失败：没有画面"_s}));
    EXPECT_EQ(card.anchor, middle);
}

TEST_F(HoverGestureTest, MovesGoToItInsteadOfDwellingUntilTheKeyIsReleased)
{
    recognizer.lines = {};
    input.hold(modifier::option);
    rest(middle, 5s);
    EXPECT_EQ(capture.requests.size(), 1u);
    pointer.held = 0; // released over a window of ours, so no event came
    rest(middle + QPointF(20, 0), 1s);
    EXPECT_EQ(capture.requests.size(), 1u);
    screens.screens[0].workArea = screens.screens[0].frame;
    rest(middle, 1s);
    EXPECT_EQ(capture.requests.size(), 2u);
    EXPECT_TRUE(card.calls.isEmpty()); // no word, no card
}

} // namespace nimbrelle
