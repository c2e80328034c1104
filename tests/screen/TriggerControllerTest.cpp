#include "support/GestureStage.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TriggerControllerTest : public testing::Test, protected GestureStage {
protected:
    TriggerControllerTest()
    {
        mark(u"word"_s);
        showWord(u"word"_s);
    }

    void markText()
    {
        input.drag({100, 100}, {200, 100});
        advance(80ms);
    }
    void doubleTap()
    {
        tap(modifier::command, 50ms);
        tap(modifier::command, 50ms);
    }
};

TEST_F(TriggerControllerTest, NoGestureActsWhereItIsNotWanted)
{
    struct Gesture {
        std::function<void()> perform;
        bool AppConfig::*setting; ///< null for a key of the desktop, which no setting switches off
    };
    const Gesture gestures[]{
        {[this] { markText(); }, &AppConfig::autoPopupOnSelect},
        {[this] { dwell(); }, &AppConfig::dwellLookup},
        {[this] { tap(modifier::option, 1s); }, &AppConfig::optionHoverOCR},
        {[this] { doubleTap(); }, &AppConfig::optionRegionTranslate},
        {[this] { trigger.perform(ShortcutAction::lookUpSelection); }, nullptr},
        {[this] { trigger.perform(ShortcutAction::translateRegion); }, nullptr},
    };
    configure([](AppConfig &config) { config.excludedBundleIDs.append(u"secret.vault"_s); });
    const Application reader = *front.front;
    for (const Gesture &gesture : gestures) {
        const auto acts = [&] {
            card.hide();
            const auto before = card.calls.size() + overlay.opened;
            const int likelyBefore = likely;
            gesture.perform();
            overlay.finish(std::nullopt);
            const bool acted = card.calls.size() + overlay.opened > before;
            // While a button is held, the pointer is grabbed anyway.
            EXPECT_TRUE((likely > likelyBefore) == acted || window.grabbed);
            return acted;
        };
        SCOPED_TRACE(&gesture - gestures);
        const auto set = [&](bool isOn) {
            configure([&](AppConfig &config) { config.*gesture.setting = isOn; });
        };
        if (gesture.setting) {
            set(false);
            EXPECT_FALSE(acts());
            set(true);
        }
        front.front->bundleID = front.own;
        EXPECT_FALSE(acts());
        front.front->bundleID = u"secret.vault"_s;
        EXPECT_FALSE(acts());
        front.front = reader;
        lock.lock(true);
        EXPECT_FALSE(acts());
        lock.lock(false);
        const PointedWindow page = window.pointed;
        window.pointed.application.bundleID = u"secret.vault"_s; // beside the reader's window
        EXPECT_FALSE(acts());
        for (const auto kind : {PointedWindow::Kind::own, PointedWindow::Kind::menu}) {
            window.pointed = {.kind = kind};
            EXPECT_FALSE(acts());
        }
        window.pointed = page;
        window.grabbed = true;
        EXPECT_FALSE(acts());
        window.grabbed = false;
        front.front = std::nullopt; // no window is no excluded one
        EXPECT_TRUE(acts());
        front.front = reader;
    }
}

TEST_F(TriggerControllerTest, AClickElsewhereOrEscTakesTheCardAwayAndScrollingAnOffer)
{
    markText();
    input.type();
    emit input.scrolled();
    EXPECT_TRUE(card.isVisible());
    input.type(Key::escape);
    EXPECT_FALSE(card.isVisible());
    markText();
    input.press({500, 500});
    EXPECT_FALSE(card.isVisible());
    mark(u"one two three four five six"_s);
    markText();
    emit input.scrolled();
    EXPECT_FALSE(card.isVisible());
}

TEST_F(TriggerControllerTest, TheLockTakesCardAndFrameAway)
{
    markText();
    lock.lock(true);
    EXPECT_FALSE(card.isVisible());
    lock.lock(false);
    doubleTap();
    EXPECT_TRUE(overlay.isOpen());
    markText();
    EXPECT_EQ(card.calls.size(), 1) << "no gesture while a frame is drawn";
    lock.lock(true);
    EXPECT_FALSE(overlay.isOpen());
}

TEST_F(TriggerControllerTest, MarkedTextIsWhatWasClaimedWhereNoPressIsTold)
{
    mark(u"older text"_s, u"some older text"_s); // which accessibility still tells of
    primary.claim(u"reluctant"_s);
    input.mark({300, 300});
    advance(79ms);
    EXPECT_TRUE(card.calls.filter(u"lookup"_s).isEmpty());
    advance(1ms);
    EXPECT_EQ(card.calls.filter(u"lookup"_s), QStringList{u"lookup reluctant | reluctant"_s})
        << "with what the screen shows";
    EXPECT_EQ(card.anchor, QPointF(300, 300));
    EXPECT_EQ(keys.copies, 0);

    mark(u"reluctant"_s, u"reluctant to post"_s);
    primary.claim(u"reluctant"_s);
    input.mark({300, 300});
    advance(80ms);
    EXPECT_EQ(card.calls.filter(u"lookup"_s).last(), u"lookup reluctant | reluctant to post"_s);

    primary.claim(u"word"_s);
    input.mark({300, 300});
    emit input.attentionMoved(); // before the program had its moment
    advance(1s);
    EXPECT_EQ(card.calls.filter(u"lookup"_s).size(), 2);
    EXPECT_FALSE(card.isVisible());
}

TEST_F(TriggerControllerTest, AnUntoldProgramMayBeAnExcludedOne)
{
    front.front = std::nullopt;
    front.told = false;
    primary.claim(u"reluctant"_s);
    input.mark({300, 300});
    advance(1s);
    EXPECT_TRUE(card.calls.filter(u"lookup"_s).isEmpty());
    configure([](AppConfig &config) { config.excludedBundleIDs.clear(); });
    primary.claim(u"reluctant"_s);
    input.mark({300, 300});
    advance(1s);
    EXPECT_EQ(card.calls.filter(u"lookup"_s).size(), 1);
}

TEST_F(TriggerControllerTest, WatchesFromStartToStop)
{
    EXPECT_TRUE(input.started);
    trigger.stop();
    EXPECT_FALSE(input.started);
    markText();
    EXPECT_TRUE(card.calls.isEmpty());
    trigger.start();
    markText();
    EXPECT_EQ(card.calls.size(), 1);
}

} // namespace nimbrelle
