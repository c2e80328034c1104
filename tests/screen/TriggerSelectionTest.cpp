#include "support/GestureStage.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class TriggerSelection : public testing::Test, protected GestureStage {
protected:
    void dragAndWait()
    {
        input.drag({100, 100}, {200, 100});
        advance(80ms);
    }
};

TEST_F(TriggerSelection, LooksAMarkedWordUpEightyMillisecondsAfterTheRelease)
{
    mark(" reluctant,", "reluctant to post");
    input.drag({100, 100}, {200, 110});
    advance(79ms);
    EXPECT_THAT(card.calls, IsEmpty());
    advance(1ms);
    EXPECT_THAT(card.calls, ElementsAre(QStringLiteral("lookup reluctant | reluctant to post")));
    EXPECT_EQ(card.anchor, QPointF(200, 110));
    EXPECT_TRUE(capture.requests.empty()); // the context was there
    EXPECT_EQ(accessibility.gestures, 1);
}

TEST_F(TriggerSelection, OnlyADragOrAMultipleClickSelects)
{
    mark("word");
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

TEST_F(TriggerSelection, OffersATranslationOfAPassageAndIgnoresTheRest)
{
    mark("one two three four five six\n");
    dragAndWait();
    EXPECT_THAT(card.calls, ElementsAre(QStringLiteral("offer one two three four five six")));
    mark("放弃");
    dragAndWait();
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(TriggerSelection, AWordWithoutContextGetsThatOfTheScreen)
{
    primary.claim(QStringLiteral("older"));
    input.press({100, 100});
    primary.claim(QStringLiteral("marked"));
    showWord("a marked word");
    input.release({200, 100});
    advance(80ms);
    EXPECT_THAT(card.calls, ElementsAre(QStringLiteral("lookup marked | a marked word")));
    EXPECT_EQ(recognizer.styles.size(), 1u);
}

TEST_F(TriggerSelection, AWordIsLookedUpAlsoWhereTheScreenGivesNoContext)
{
    mark("word");
    dragAndWait(); // nothing is seen
    recognizer.failure = QStringLiteral("引擎坏了");
    dragAndWait();
    capture.allowed = false;
    const auto captures = capture.requests.size();
    dragAndWait();
    EXPECT_THAT(card.calls, testing::Each(QStringLiteral("lookup word | -")));
    EXPECT_EQ(card.calls.size(), 3);
    EXPECT_EQ(capture.requests.size(), captures);
}

TEST_F(TriggerSelection, DoesNothingWhereItIsNotWanted)
{
    mark("word");
    front.front->bundleID = front.own;
    dragAndWait();
    front.front->bundleID = QStringLiteral("secret.vault");
    configure([](AppConfig &config) { config.excludedBundleIDs.append(QStringLiteral("secret.vault")); });
    dragAndWait();
    front.front->bundleID = QStringLiteral("reader");
    configure([](AppConfig &config) { config.autoPopupOnSelect = false; });
    dragAndWait();
    EXPECT_THAT(card.calls, IsEmpty());
    EXPECT_EQ(accessibility.questions, 0);
    configure([](AppConfig &config) { config.autoPopupOnSelect = true; });
    front.front = std::nullopt; // no window is no excluded one
    dragAndWait();
    EXPECT_EQ(card.calls.size(), 1);
}

TEST_F(TriggerSelection, ANewerReleaseReplacesTheOlder)
{
    mark("double");
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
    EXPECT_THAT(card.calls, ElementsAre(QStringLiteral("lookup double | -")));
}

TEST_F(TriggerSelection, AClickElsewhereOrEscTakesTheCardAway)
{
    mark("word");
    dragAndWait();
    input.type();
    EXPECT_TRUE(card.isVisible());
    input.type(Key::escape);
    EXPECT_FALSE(card.isVisible());
    dragAndWait();
    input.press({500, 500});
    EXPECT_FALSE(card.isVisible());
}

TEST_F(TriggerSelection, ScrollingTakesOnlyAnOfferAway)
{
    mark("word");
    dragAndWait();
    input.scroll();
    EXPECT_TRUE(card.isVisible());
    mark("one two three four five six");
    dragAndWait();
    input.scroll();
    EXPECT_FALSE(card.isVisible());
}

TEST_F(TriggerSelection, HearsNothingOnceStoppedAndEachEventOnceHoweverOftenStarted)
{
    mark("word");
    trigger.start();
    trigger.start();
    dragAndWait();
    EXPECT_EQ(card.calls.size(), 1);
    trigger.stop();
    EXPECT_FALSE(input.started);
    input.started = true;
    dragAndWait();
    EXPECT_EQ(card.calls.size(), 1);
}

} // namespace nimbrelle
