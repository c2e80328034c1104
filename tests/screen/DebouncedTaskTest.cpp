#include "screen/DebouncedTask.h"

#include "support/ManualClock.h"

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace std::chrono_literals;

TEST(DebouncedTask, StartsOnceItsNewestWaitIsOver)
{
    ManualClock clock;
    int starts = 0;
    std::stop_token running;
    {
        DebouncedTask task{clock, [&](std::stop_token stop) {
                               ++starts;
                               running = stop;
                           }};
        for (int move = 0; move < 100; ++move) {
            task.schedule(1s);
            clock.advance(999ms);
        }
        EXPECT_EQ(clock.pending(), 1); // one timer for all of them
        EXPECT_EQ(starts, 0);
        clock.advance(1ms);
        EXPECT_EQ(starts, 1);
        EXPECT_FALSE(running.stop_requested());
        task.schedule(3s);
        EXPECT_TRUE(running.stop_requested());
        task.schedule(300ms);
        clock.advance(300ms);
        EXPECT_EQ(starts, 2);
        task.cancel();
        EXPECT_TRUE(running.stop_requested());
        task.schedule(1s);
        task.cancel();
        clock.advance(1h);
        task.schedule(1s);
    }
    clock.advance(1h); // it is gone by now
    EXPECT_EQ(starts, 2);
}

} // namespace nimbrelle
