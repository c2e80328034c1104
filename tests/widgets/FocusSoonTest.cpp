#include "widgets/FocusSoon.h"

#include "support/ManualClock.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

struct FocusSoonTest : testing::Test {
    void begin()
    {
        focusSoon(
            clock, [this] { tries.append((clock.now() - start) / 1ms); }, [this] { return isDone; },
            stop.get_token());
    }

    ManualClock clock;
    const Timestamp start = clock.now();
    std::stop_source stop;
    bool isDone = false;
    QList<qint64> tries; // milliseconds
};

} // namespace

TEST_F(FocusSoonTest, TriesFourTimesAndThenLetsItBe)
{
    begin();
    EXPECT_TRUE(tries.isEmpty());
    clock.advance(10s);
    EXPECT_THAT(tries, ElementsAre(30, 150, 450, 1050));
}

TEST_F(FocusSoonTest, EndsWithTheFocusOrWhenItIsStopped)
{
    begin();
    clock.advance(200ms);
    isDone = true;
    clock.advance(10s);
    EXPECT_THAT(tries, ElementsAre(30, 150));
    tries.clear();
    isDone = false;
    begin();
    stop.request_stop();
    clock.advance(10s);
    EXPECT_TRUE(tries.isEmpty());
}

} // namespace nimbrelle
