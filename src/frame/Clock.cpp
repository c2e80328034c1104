#include "frame/Clock.h"

#include <QTimer>

#include <coroutine>
#include <memory>
#include <optional>

namespace nimbrelle {

namespace {

// Shared by the timer and the stop request; whichever comes first resumes the sleeper, once.
struct Sleeper {
    std::coroutine_handle<> waiting;
    bool over = false;

    void wake()
    {
        if (std::exchange(over, true))
            return;
        if (const auto handle = std::exchange(waiting, nullptr))
            handle.resume();
    }
};

struct SleepAwaiter {
    Clock &clock;
    std::chrono::milliseconds delay;
    std::stop_token stop;
    std::shared_ptr<Sleeper> sleeper = std::make_shared<Sleeper>();
    std::optional<std::stop_callback<std::function<void()>>> onStop{};

    SleepAwaiter(Clock &usedClock, std::chrono::milliseconds length, std::stop_token token)
        : clock(usedClock), delay(length), stop(std::move(token))
    {
    }

    bool await_ready() const { return stop.stop_requested(); }

    void await_suspend(std::coroutine_handle<> handle)
    {
        sleeper->waiting = handle;
        clock.callAfter(delay, [shared = sleeper] { shared->wake(); });
        onStop.emplace(stop, [shared = sleeper] { shared->wake(); });
    }

    void await_resume() { sleeper->over = true; }
};

} // namespace

QCoro::Task<> Clock::sleep(std::chrono::milliseconds delay, std::stop_token stop)
{
    SleepAwaiter awaiter(*this, delay, std::move(stop));
    co_await awaiter;
}

SystemClock &SystemClock::shared()
{
    static SystemClock clock;
    return clock;
}

Timestamp SystemClock::now() const
{
    return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

void SystemClock::callAfter(std::chrono::milliseconds delay, std::function<void()> then)
{
    QTimer::singleShot(std::max(delay, std::chrono::milliseconds{0}), Qt::PreciseTimer, std::move(then));
}

} // namespace nimbrelle
