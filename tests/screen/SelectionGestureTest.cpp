#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class SelectionGestureTest : public testing::Test, protected GestureStage {
protected:
    void drag(std::chrono::milliseconds wait = 80ms)
    {
        input.drag({100, 100}, {200, 110});
        advance(wait);
    }
};

TEST_F(SelectionGestureTest, LooksUpAMarkedWordEightyMillisecondsAfterTheRelease)
{
    mark(u" reluctant,"_s, u"reluctant to post"_s);
    drag(79ms);
    EXPECT_TRUE(card.calls.isEmpty());
    advance(1ms);
    EXPECT_EQ(card.calls, QStringList{u"lookup reluctant | reluctant to post"_s});
    EXPECT_EQ(card.anchor, QPointF(200, 110));
    EXPECT_TRUE(recognizer.styles.empty()); // the context was there
}

TEST_F(SelectionGestureTest, TheGrabOfTheClickItselfIsNobodyElses)
{
    mark(u"reluctant"_s);
    window.grabbed = true; // until a moment after the release
    drag(79ms);
    window.grabbed = false;
    advance(1ms);
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(SelectionGestureTest, OnlyADragOrAMultipleClickSelects)
{
    mark(u"word"_s);
    input.click({100, 100}, 1);
    input.drag({100, 100}, {104, 100}); // exactly 4 points
    advance(1s);
    EXPECT_EQ(accessibility.gestures, 0);
    input.drag({100, 100}, {104, 101});
    advance(1s);
    EXPECT_EQ(accessibility.gestures, 1);
    input.click({100, 100}, 2);
    advance(1s);
    EXPECT_EQ(accessibility.gestures, 2);
}

TEST_F(SelectionGestureTest, ALookupIsLikelyFromASecondPressAndFromADragPastItsThreshold)
{
    input.press({100, 100});
    input.move({104, 100});
    EXPECT_EQ(likely, 0);
    input.move({104, 101});
    EXPECT_EQ(likely, 1);
    input.move({100, 100});
    input.move({200, 100});
    input.release({200, 100});
    EXPECT_EQ(likely, 1) << "once a press";
    input.click({100, 100});
    input.press({100, 100}, 2);
    EXPECT_EQ(likely, 2);
    input.release({100, 100}, 2);
    input.click({100, 100}, 3);
    EXPECT_EQ(likely, 2);
}

TEST_F(SelectionGestureTest, TheFirstPressOfADoubleClickDecidesWhatIsOld)
{
    input.click({100, 100}, 1);
    primary.claim(u"word"_s); // by a program that is quicker than the news of the second press
    input.click({100, 100}, 2);
    advance(80ms);
    EXPECT_EQ(card.calls, QStringList{u"lookup word | -"_s});
    input.click({100, 100}, 1);
    input.click({100, 100}, 2);
    advance(1s);
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(SelectionGestureTest, OffersATranslationOfAPassageAndIgnoresTheRest)
{
    mark(u"one two three four five six\n"_s);
    drag();
    mark(u"放弃"_s);
    drag();
    EXPECT_EQ(card.calls, QStringList{u"offer one two three four five six"_s});
}

TEST_F(SelectionGestureTest, AWordWithoutContextGetsThatOfTheScreenIfThereIsAny)
{
    primary.claim(u"older"_s);
    drag(1s); // marks nothing
    EXPECT_TRUE(card.calls.isEmpty());
    input.press({100, 100});
    primary.claim(u"marked"_s);
    showWord(u"a marked word"_s);
    input.release({200, 100});
    advance(80ms);
    EXPECT_EQ(card.calls, QStringList{u"lookup marked | a marked word"_s});
    mark(u"word"_s);
    recognizer.lines = {};
    drag();
    recognizer.failure = u"引擎坏了"_s;
    drag();
    capture.allowed = false;
    drag();
    EXPECT_EQ(card.calls.mid(1), QStringList(3, u"lookup word | -"_s));
}

TEST_F(SelectionGestureTest, TheContextIsReadOffThePictureOfTheFirstPress)
{
    mark(u"admit"_s);
    recognizer.linesOf['b'] = {FakeTextRecognizer::line(u"to admit that"_s, {0.4, 0.45, 0.2, 0.1})};
    capture.shown = 'b';
    input.click(middle);
    capture.shown = 'm';
    input.click(middle, 2);
    advance(80ms);
    EXPECT_EQ(card.calls, QStringList{u"lookup admit | to admit that"_s});
    advance(400ms);
    input.click(middle, 3);
    advance(80ms);
    EXPECT_EQ(card.calls.value(1), u"lookup admit | to admit that"_s);
    EXPECT_EQ(capture.requests.size(), 1u);
    // A flow that is still reading keeps its own when the next press comes.
    recognizer.delay = 200ms;
    capture.shown = 'b';
    input.press(middle);
    capture.shown = 'm';
    input.release(middle + QPointF(20, 0));
    advance(100ms);
    input.press(middle);
    advance(1s);
    EXPECT_EQ(card.calls.value(2), u"lookup admit | to admit that"_s);
}

TEST_F(SelectionGestureTest, NoPictureIsTakenWhereNothingMayBeReadNorKeptAfterTheGesture)
{
    const auto pressed = [this] {
        input.click({100, 100});
        return std::exchange(capture.requests, {}).size();
    };
    EXPECT_EQ(pressed(), 1u);
    capture.failure = u"没有画面"_s;
    EXPECT_EQ(pressed(), 1u); // silently
    capture.failure.reset();
    capture.allowed = false;
    EXPECT_EQ(pressed(), 0u);
    capture.allowed = true;
    configure([](AppConfig &config) { config.excludedBundleIDs = {u"reader"_s}; });
    EXPECT_EQ(pressed(), 0u);
    configure([](AppConfig &config) {
        config.excludedBundleIDs.clear();
        config.autoPopupOnSelect = false;
    });
    EXPECT_EQ(pressed(), 0u);
    configure([](AppConfig &config) { config.autoPopupOnSelect = true; });
    // A second later the press belongs to no gesture any more.
    mark(u"admit"_s);
    showWord(u"admit"_s);
    input.click({100, 100});
    advance(1s);
    input.click({100, 100}, 2);
    advance(80ms);
    EXPECT_EQ(capture.requests.size(), 2u);
}

TEST_F(SelectionGestureTest, ANewerReleaseReplacesTheOlder)
{
    mark(u"double"_s);
    recognizer.delay = 500ms;
    input.click({100, 100}, 2);
    advance(50ms);
    input.click({100, 100}, 3);
    advance(50ms);
    EXPECT_EQ(accessibility.gestures, 0);
    advance(100ms); // the screen is being read now
    EXPECT_EQ(accessibility.gestures, 1);
    input.click({100, 100}, 4);
    advance(2s);
    EXPECT_EQ(card.calls, QStringList{u"lookup double | -"_s});
}

TEST_F(SelectionGestureTest, ANewerReleaseReplacesOneWhoseProgramStillAnswers)
{
    accessibility.delay = 100ms;
    mark(u"older"_s, u"older one"_s);
    drag();
    mark(u"newer"_s, u"newer one"_s);
    drag();
    EXPECT_TRUE(card.calls.isEmpty());
    advance(1s);
    EXPECT_EQ(card.calls, QStringList{u"lookup newer | newer one"_s});
}

TEST_F(SelectionGestureTest, AKeyLooksUpWhatIsMarkedNowAndTellsItsFailures)
{
    input.press({100, 100});
    input.release({100, 100}); // what is marked was so before
    pointer.at = {300, 200};
    const auto press = [this] {
        trigger.perform(ShortcutAction::lookUpSelection);
        return card.calls.takeLast();
    };
    capture.allowed = false;
    EXPECT_EQ(press(), u"error 没有读到选中的文字，请先选中一个词或一段英文。"_s);
    mark(u"reluctant"_s, u"I was reluctant to post."_s);
    accessibility.isOldMark = true;
    EXPECT_EQ(press(), u"lookup reluctant | I was reluctant to post."_s);
    EXPECT_EQ(card.anchor, QPointF(300, 200));
    primary.claim(u"was"_s); // in a window that does not have the focus
    EXPECT_EQ(press(), u"lookup was | -"_s) << "the other text is not its context";
    primary.claim(u" reluctant"_s);
    EXPECT_EQ(press(), u"lookup reluctant | I was reluctant to post."_s);
    primary.claim(u"one two three four five six"_s);
    EXPECT_EQ(press(), u"translate one two three four five six"_s);
    primary.claim(u"1234"_s);
    EXPECT_EQ(press(), u"error 选中的文字里没有英文。"_s);
    pointer.tellsLocation = false;
    EXPECT_EQ(press(), u"error 选中的文字里没有英文。"_s);
    EXPECT_EQ(keys.copies, 0);
}

} // namespace nimbrelle
