#include "support/GestureStage.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class TriggerDwell : public testing::Test, protected GestureStage {
protected:
    TriggerDwell() { showWord("reluctant"); }

    /// Rests long enough on the middle of the screen, from a little way off.
    void dwell()
    {
        input.move(middle + QPointF(-300, 0));
        rest(middle, 1s);
    }
    /// A card opened by dwelling in the middle of the screen, standing well below.
    void openDwellCard()
    {
        card.place = {600, 100, 340, 200};
        const qsizetype before = card.calls.size();
        dwell();
        ASSERT_EQ(card.calls.size(), before + 1);
    }
};

TEST_F(TriggerDwell, LooksTheWordUnderARestingPointerUp)
{
    rest(middle, 999ms);
    EXPECT_THAT(card.calls, IsEmpty());
    advance(1ms);
    EXPECT_THAT(card.calls, ElementsAre(QStringLiteral("lookup reluctant | reluctant")));
    EXPECT_EQ(card.anchor, middle);
}

TEST_F(TriggerDwell, EachMoveBeginsTheWaitAnew)
{
    for (int move = 0; move < 20; ++move)
        rest(middle + QPointF(move, 0), 900ms);
    EXPECT_TRUE(capture.requests.empty());
    advance(100ms);
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(TriggerDwell, WaitsNoLessThanAThirdOfASecondAndNoMoreThanThree)
{
    const std::pair<double, std::chrono::milliseconds> cases[]{
        {0.1, 300ms}, {-5, 300ms}, {0.75, 750ms}, {10, 3000ms}, {1e300, 3000ms}};
    for (const auto &[seconds, wait] : cases) {
        capture.requests.clear();
        card.hide();
        configure([wanted = seconds](AppConfig &config) { config.dwellSeconds = wanted; });
        pointer.at += QPointF(200, 0);
        input.move(pointer.at.x() > 1200 ? QPointF(100, 300) : pointer.at);
        advance(wait - 1ms);
        EXPECT_TRUE(capture.requests.empty()) << seconds;
        advance(1ms);
        EXPECT_EQ(capture.requests.size(), 1u) << seconds;
    }
}

TEST_F(TriggerDwell, EveryGuardMustPass)
{
    struct Case {
        const char *name;
        std::function<void()> spoil;
        std::function<void()> mend;
    };
    const auto own = front.own;
    const Case cases[]{
        {"setting off", [this] { configure([](AppConfig &c) { c.dwellLookup = false; }); },
            [this] { configure([](AppConfig &c) { c.dwellLookup = true; }); }},
        {"own window", [this, own] { front.front->bundleID = own; },
            [this] { front.front->bundleID = QStringLiteral("reader"); }},
        {"a button held", [this] { pointer.buttons = 2; }, [this] { pointer.buttons = 0; }},
        {"a modifier held", [this] { pointer.held = modifier::shift; }, [this] { pointer.held = 0; }},
        {"no capture", [this] { capture.allowed = false; }, [this] { capture.allowed = true; }},
        {"on a panel",
            [this] {
                screens.screens[0].workArea = {0, 0, 1280, 399};
            },
            [this] {
                screens.screens[0].workArea = {0, 0, 1280, 770};
            }},
        {"off the screens",
            [this] {
                screens.screens[0].frame = {0, 0, 1280, 399};
            },
            [this] {
                screens.screens[0].frame = {0, 0, 1280, 800};
            }},
        {"a failure", [this] { capture.failure = QStringLiteral("x"); }, [this] { capture.failure.reset(); }},
        {"no word", [this] { recognizer.lines = {}; }, [this] { showWord("reluctant"); }},
        {"one letter", [this] { showWord("a"); }, [this] { showWord("reluctant"); }},
    };
    for (const Case &c : cases) {
        c.spoil();
        dwell();
        EXPECT_THAT(card.calls, IsEmpty()) << c.name;
        c.mend();
    }
    dwell();
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(TriggerDwell, WaitsOutTyping)
{
    configure([](AppConfig &config) { config.dwellSeconds = 0.4; });
    input.type();
    advance(1000ms);
    rest(middle, 400ms); // 1.4 s after the key
    EXPECT_TRUE(capture.requests.empty());
    advance(10s);
    EXPECT_TRUE(capture.requests.empty()); // not before the pointer moves again
    rest(middle + QPointF(1, 0), 400ms);
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(TriggerDwell, AKeyOrAClickCancelsTheWait)
{
    input.move(middle);
    input.type();
    advance(2s);
    input.move(middle);
    input.press(middle);
    pointer.buttons = 0;
    advance(2s);
    EXPECT_TRUE(capture.requests.empty());
}

TEST_F(TriggerDwell, TheWorldMayChangeWhileThePictureIsRead)
{
    recognizer.delay = 300ms;
    dwell();
    pointer.at = middle + QPointF(6, 0);
    advance(300ms);
    EXPECT_THAT(card.calls, IsEmpty());
    dwell();
    input.type();
    advance(300ms);
    EXPECT_THAT(card.calls, IsEmpty());
    advance(5s);
    dwell();
    card.offerTranslation(QStringLiteral("x"), middle); // another gesture was first
    advance(300ms);
    EXPECT_EQ(card.calls.size(), 1);
    card.hide();
    dwell();
    pointer.at = middle + QPointF(5.9, 0);
    advance(300ms);
    EXPECT_EQ(card.calls.last(), QStringLiteral("lookup reluctant | reluctant"));
    EXPECT_EQ(card.anchor, middle);
}

TEST_F(TriggerDwell, ItsCardGoesWhenThePointerLeavesTheWord)
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

TEST_F(TriggerDwell, ItsCardStaysOnceThePointerHasBeenOnIt)
{
    openDwellCard();
    input.move(middle + QPointF(0, -45)); // on the way
    input.move({598, 303}); // 4 points beside it count
    EXPECT_TRUE(card.isVisible());
    recognizer.lines = {};
    rest({100, 700}, 5s);
    EXPECT_TRUE(card.isVisible());
    input.type(Key::escape);
    EXPECT_FALSE(card.isVisible());
}

TEST_F(TriggerDwell, NothingIsReadOnTheCardOrOnTheWordJustShown)
{
    openDwellCard();
    const auto captures = capture.requests.size();
    rest(middle + QPointF(77, 0), 2s); // 2 points beside the word still count as on it
    rest({700, 250}, 2s);
    EXPECT_EQ(capture.requests.size(), captures);
}

TEST_F(TriggerDwell, ASecondWordReplacesItsCard)
{
    openDwellCard();
    rest(middle + QPointF(100, 0), 1s);
    EXPECT_EQ(card.calls.size(), 2);
    EXPECT_EQ(card.anchor, middle + QPointF(100, 0));
}

TEST_F(TriggerDwell, LeavesACardAloneThatTheUserOpenedOnPurpose)
{
    mark("chosen", "a chosen word");
    input.drag(middle, middle + QPointF(50, 0));
    advance(80ms);
    rest(middle + QPointF(300, 0), 5s);
    EXPECT_THAT(card.calls, ElementsAre(QStringLiteral("lookup chosen | a chosen word")));
    EXPECT_TRUE(card.isVisible());
    EXPECT_TRUE(capture.requests.empty());
    input.press(middle); // and after a click elsewhere all is as before
    input.release(middle);
    dwell();
    EXPECT_EQ(card.calls.size(), 2);
}

} // namespace nimbrelle
