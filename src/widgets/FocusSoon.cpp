#include "widgets/FocusSoon.h"

#include "frame/Clock.h"

namespace nimbrelle {

QCoro::Task<> focusSoon(
    Clock &clock, std::function<void()> action, std::function<bool()> isDone, std::stop_token stop)
{
    using namespace std::chrono_literals;
    static constexpr std::chrono::milliseconds waits[]{30ms, 120ms, 300ms, 600ms};
    for (const auto wait : waits) {
        co_await clock.sleep(wait, stop);
        if (stop.stop_requested() || isDone())
            co_return;
        action();
    }
}

} // namespace nimbrelle
