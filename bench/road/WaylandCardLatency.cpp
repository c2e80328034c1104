// The same as CardLatency.cpp, in a session of sway.

#include "WaylandScene.h"
#include "road/RoadTimes.h"

#include <QApplication>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

constexpr int holdMs =
    80; // as long as a person's finger stays down; a shorter mark passes for one by keyboard

int gestures = 100;

class CardLatency : public WaylandScene {
protected:
    void SetUp() override
    {
        WaylandScene::SetUp();
        AppConfig config = practiceConfig();
        config.dwellLookup = false;
        writeConfig(config);
        startProgram();
        openEditor(u"I was reluctant to post this, but here we go, and nobody minded in the end.\n\n\n"_s);
    }
    void TearDown() override { }

    /// The pictures come with the next of the screen's own, as they would for the user.
    RoadTimes times()
    {
        return {.hand = hand(),
            .colourAt = [this](QPoint at) { return screenImage().pixel(at); },
            .dismiss =
                [this] {
                    click({640, 700});
                },
            .gestures = gestures};
    }
};

TEST_F(CardLatency, AWord)
{
    const QPoint word = inEditor(u"reluctant"_s).center();
    print("sway: a word, double click",
        times().measured(
            [&] {
                click(word);
                hand().button(1, true);
                QTest::qWait(holdMs);
            },
            word + insideCard),
        ruleWaitMs);
}

TEST_F(CardLatency, APassage)
{
    const QPoint from = inEditor(u"I was"_s).topLeft() + QPoint(1, 8);
    const QPoint to = inEditor(u"minded"_s).center();
    print("sway: a passage, drag",
        times().measured(
            [&] {
                hand().moveTo(from);
                QTest::qWait(20);
                hand().button(1, true);
                QTest::qWait(20);
                hand().moveTo(to);
                QTest::qWait(holdMs);
            },
            to + insideOffer),
        ruleWaitMs);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    if (argc > 1)
        gestures = std::max(1, std::atoi(argv[1]));
    return RUN_ALL_TESTS();
}
