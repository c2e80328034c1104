#include "screen/QuietDelay.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace std::chrono_literals;

class QuietDelayTest : public testing::Test {
protected:
    ManualClock clock;
    int acted = 0;
    QuietDelay delay{clock, [this] { ++acted; }};
};

TEST_F(QuietDelayTest, ActsOnceAfterTheLastArming)
{
    for (int move = 0; move < 100; ++move) {
        delay.arm(1s);
        clock.advance(10ms);
    }
    EXPECT_LE(clock.pending(), 1);
    clock.advance(989ms);
    EXPECT_EQ(acted, 0);
    clock.advance(1ms);
    EXPECT_EQ(acted, 1);
    clock.advance(1h);
    EXPECT_EQ(acted, 1);
    EXPECT_EQ(clock.pending(), 0);
}

TEST_F(QuietDelayTest, AShorterWaitDoesNotWaitForTheLonger)
{
    delay.arm(3s);
    delay.arm(300ms);
    clock.advance(300ms);
    EXPECT_EQ(acted, 1);
    clock.advance(1h);
    EXPECT_EQ(acted, 1);
}

TEST_F(QuietDelayTest, CancelledOrGoneItDoesNothing)
{
    delay.arm(1s);
    delay.cancel();
    clock.advance(2s);
    {
        QuietDelay brief{clock, [this] { ++acted; }};
        brief.arm(1s);
    }
    clock.advance(2s);
    EXPECT_EQ(acted, 0);
    delay.arm(1s);
    delay.cancel();
    delay.arm(2s);
    clock.advance(1999ms);
    EXPECT_EQ(acted, 0);
    clock.advance(1ms);
    EXPECT_EQ(acted, 1);
}

} // namespace nimbrelle
