#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class DwellGestureTest : public testing::Test, protected GestureStage {
protected:
    DwellGestureTest() { showWord(u"at"_s); } // no shorter word is read

    /// A card opened by dwelling in the middle of the screen, well below it.
    void openDwellCard()
    {
        card.place = {600, 100, 340, 200};
        dwell();
        ASSERT_TRUE(card.isVisible());
    }
};

TEST_F(DwellGestureTest, LooksUpTheWordUnderAPointerThatRestsForASecond)
{
    for (int move = 0; move < 20; ++move) // each begins the wait anew
        rest(middle + QPointF(0, move), 999ms);
    EXPECT_TRUE(capture.requests.empty());
    advance(1ms);
    EXPECT_EQ(card.calls, QStringList{u"lookup at | at"_s});
    EXPECT_EQ(card.anchor, middle + QPointF(0, 19));
    EXPECT_EQ(accessibility.gestures, 1);
}

TEST_F(DwellGestureTest, WaitsNoLessThanAThirdOfASecondAndNoMoreThanThree)
{
    const std::pair<double, std::chrono::milliseconds> cases[]{
        {0.1, 300ms}, {-5, 300ms}, {0.75, 750ms}, {10, 3000ms}, {1e300, 3000ms}};
    for (const auto &[seconds, wait] : cases) {
        capture.requests.clear();
        card.hide();
        configure([wanted = seconds](AppConfig &config) { config.dwellSeconds = wanted; });
        rest(pointer.at - QPointF(100, 0), wait - 1ms);
        EXPECT_TRUE(capture.requests.empty()) << seconds;
        advance(1ms);
        EXPECT_EQ(capture.requests.size(), 1u) << seconds;
    }
}

TEST_F(DwellGestureTest, ALookupIsLikelyWhenHalfOfTheWaitIsOverAndNothingForbidsIt)
{
    for (int move = 0; move < 20; ++move)
        rest(middle + QPointF(0, move), 499ms);
    EXPECT_EQ(likely, 0);
    advance(1ms);
    EXPECT_EQ(likely, 1);
    advance(10s);
    card.hide();
    rest(middle + QPointF(1, 19), 10s); // on the word that was just read
    input.move(middle + QPointF(200, 0));
    input.type();
    advance(10s);
    input.move(middle + QPointF(201, 0));
    input.click(middle + QPointF(201, 0));
    advance(10s);
    capture.allowed = false;
    rest(middle + QPointF(202, 0), 10s);
    EXPECT_EQ(likely, 1);
    EXPECT_EQ(clock.pending(), 0) << "nothing wakes the program while the pointer is still";
}

TEST(DwellGuards, EachKeepsTheCardAway)
{
    const std::pair<const char *, void (*)(GestureStage &)> guards[]{
        {"a button held", [](GestureStage &stage) { stage.pointer.buttons = 2; }},
        {"a modifier held", [](GestureStage &stage) { stage.pointer.held = modifier::shift; }},
        {"no capture", [](GestureStage &stage) { stage.capture.allowed = false; }},
        {"on a panel", [](GestureStage &stage) { stage.screens.screens[0].workArea.setHeight(399); }},
        {"off the screens", [](GestureStage &stage) { stage.screens.screens[0].frame.setHeight(399); }},
        {"a failure", [](GestureStage &stage) { stage.capture.failure = u"x"_s; }},
        {"no word", [](GestureStage &stage) { stage.recognizer.lines = {}; }},
        {"one letter", [](GestureStage &stage) { stage.showWord(u"a"_s); }},
    };
    for (const auto &[name, fail] : guards) {
        GestureStage stage;
        stage.showWord(u"reluctant"_s);
        fail(stage);
        stage.dwell();
        EXPECT_TRUE(stage.card.calls.isEmpty()) << name;
    }
}

TEST_F(DwellGestureTest, WaitsOutTyping)
{
    configure([](AppConfig &config) { config.dwellSeconds = 0.4; });
    input.type();
    advance(1100ms);
    rest(middle, 400ms); // 1.5 s after the key
    advance(10s);
    EXPECT_TRUE(capture.requests.empty()); // not before the pointer moves again
    rest(middle + QPointF(1, 0), 400ms);
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(DwellGestureTest, AKeyOrAClickCancelsTheWait)
{
    configure([](AppConfig &config) { config.dwellSeconds = 2; }); // longer than the pause after a key
    input.move(middle);
    input.type();
    advance(3s);
    input.move(middle);
    input.click(middle);
    advance(3s);
    EXPECT_TRUE(recognizer.styles.empty());
}

TEST_F(DwellGestureTest, WhatChangesWhileThePictureIsReadCounts)
{
    recognizer.delay = 300ms;
    dwell();
    pointer.at = middle + QPointF(6, 0);
    advance(300ms);
    dwell();
    input.type();
    advance(5s);
    EXPECT_TRUE(card.calls.isEmpty());
    dwell();
    card.offerTranslation(u"x"_s, middle); // another gesture was first
    advance(300ms);
    EXPECT_EQ(card.calls.size(), 1);
    card.hide();
    dwell();
    pointer.at = middle + QPointF(5.9, 0);
    advance(300ms);
    EXPECT_EQ(card.calls.last(), u"lookup at | at"_s);
    EXPECT_EQ(card.anchor, middle);
}

TEST_F(DwellGestureTest, ItsCardGoesWhenThePointerLeavesTheWord)
{
    // The word's box reaches 76 points to each side and 10 up and down.
    openDwellCard();
    for (const QPointF inside : {QPointF(135, 49), QPointF(-135, -49)}) {
        input.move(middle + inside);
        EXPECT_TRUE(card.isVisible());
    }
    for (const QPointF outside : {QPointF(137, 0), QPointF(-137, 0), QPointF(0, 51), QPointF(0, -51)}) {
        openDwellCard();
        input.move(middle + outside);
        EXPECT_FALSE(card.isVisible());
    }
}

TEST_F(DwellGestureTest, ItsCardStaysOnceThePointerHasBeenOnIt)
{
    openDwellCard();
    input.move(middle + QPointF(0, -45)); // on the way
    input.move({597, 303}); // 4 points beside it count
    rest({100, 700}, 5s);
    EXPECT_TRUE(card.isVisible());
    input.click({100, 700});
    rest(middle + QPointF(100, 0), 1s);
    EXPECT_TRUE(card.isVisible());
    input.move({100, 700}); // it has not been on this one
    EXPECT_FALSE(card.isVisible());
}

TEST_F(DwellGestureTest, OnlyAnotherWordIsReadAndReplacesItsCard)
{
    openDwellCard();
    rest(middle + QPointF(77, 0), 2s); // 2 points beside the word still count as on it
    EXPECT_EQ(capture.requests.size(), 1u);
    rest(middle + QPointF(100, 0), 1s);
    EXPECT_EQ(card.calls.size(), 2);
    rest({700, 250}, 2s); // on the card
    EXPECT_EQ(capture.requests.size(), 2u);
}

TEST_F(DwellGestureTest, LeavesACardAloneThatTheUserOpenedOnPurpose)
{
    openDwellCard();
    mark(u"chosen"_s);
    emit input.mouseReleased(middle, 2); // and no press before it, which would have hidden the card
    advance(80ms);
    rest(middle + QPointF(300, 0), 5s);
    EXPECT_EQ(capture.requests.size(), 2u); // the second for the context of what was chosen
    EXPECT_TRUE(card.isVisible());
    input.click(middle); // and after a click elsewhere all is as before
    rest(middle - QPointF(300, 0), 1s);
    EXPECT_EQ(card.calls.size(), 3);
}

} // namespace nimbrelle
