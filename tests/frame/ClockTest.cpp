#include "support/ManualClock.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace std::chrono_literals;

namespace {

QCoro::Task<> noteWaking(Clock &clock, std::chrono::milliseconds delay, std::stop_token stop, int &woken)
{
    co_await clock.sleep(delay, stop);
    ++woken;
}

TEST(Clock, WakesWhenItsTimeHasCome)
{
    ManualClock clock;
    int woken = 0;
    noteWaking(clock, 1200ms, {}, woken);
    clock.advance(1199ms);
    EXPECT_EQ(woken, 0);
    clock.advance(1ms);
    EXPECT_EQ(woken, 1);
}

TEST(Clock, WakesAtOnceAndOnlyOnceWhenStopped)
{
    ManualClock clock;
    std::stop_source stop;
    int woken = 0;
    noteWaking(clock, 1200ms, stop.get_token(), woken);
    stop.request_stop();
    EXPECT_EQ(woken, 1);
    clock.advance(2s);
    EXPECT_EQ(woken, 1);
    noteWaking(clock, 1200ms, stop.get_token(), woken);
    EXPECT_EQ(woken, 2) << "a token that is stopped already waits for nothing";
}

TEST(Clock, OfTheSystemWakesFromTheEventLoop)
{
    int woken = 0;
    noteWaking(SystemClock::shared(), 0ms, {}, woken);
    EXPECT_EQ(woken, 0);
    while (woken == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

} // namespace
