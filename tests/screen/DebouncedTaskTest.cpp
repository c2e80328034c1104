#include "screen/DebouncedTask.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace std::chrono_literals;

class DebouncedTaskTest : public testing::Test {
protected:
    ManualClock clock;
    int acted = 0;
    DebouncedTask delay{clock, [this](std::stop_token) { ++acted; }};
};

TEST_F(DebouncedTaskTest, ActsOnceAfterTheLastArming)
{
    for (int move = 0; move < 100; ++move) {
        delay.schedule(1s);
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

TEST_F(DebouncedTaskTest, AShorterWaitDoesNotWaitForTheLonger)
{
    delay.schedule(3s);
    delay.schedule(300ms);
    clock.advance(300ms);
    EXPECT_EQ(acted, 1);
    clock.advance(1h);
    EXPECT_EQ(acted, 1);
}

TEST_F(DebouncedTaskTest, CancelledOrGoneItDoesNothing)
{
    delay.schedule(1s);
    delay.cancel();
    clock.advance(2s);
    {
        DebouncedTask brief{clock, [this](std::stop_token) { ++acted; }};
        brief.schedule(1s);
    }
    clock.advance(2s);
    EXPECT_EQ(acted, 0);
    delay.schedule(1s);
    delay.cancel();
    delay.schedule(2s);
    clock.advance(1999ms);
    EXPECT_EQ(acted, 0);
    clock.advance(1ms);
    EXPECT_EQ(acted, 1);
}

} // namespace nimbrelle
