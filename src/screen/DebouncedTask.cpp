#include "screen/DebouncedTask.h"

#include <utility>

namespace nimbrelle {

DebouncedTask::DebouncedTask(Clock &clock, std::function<void(std::stop_token)> start)
    : m_clock(clock), m_start(std::move(start))
{
}

void DebouncedTask::schedule(std::chrono::milliseconds wait)
{
    m_due = m_clock.now() + wait;
    m_task.cancel();
    if (!m_timerAt || *m_timerAt > *m_due)
        waitUntilDue(m_timer.renew());
}

void DebouncedTask::cancel()
{
    m_due.reset();
    m_task.cancel();
}

// A later schedule() only moves m_due on; the timer that is set already then waits for the rest.
QCoro::Task<> DebouncedTask::waitUntilDue(std::stop_token stop)
{
    while (m_due && m_clock.now() < *m_due) {
        m_timerAt = *m_due;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*m_due - m_clock.now());
        co_await m_clock.sleep(left, stop);
        if (stop.stop_requested())
            co_return;
    }
    m_timerAt.reset();
    if (std::exchange(m_due, std::nullopt))
        m_start(m_task.renew());
}

} // namespace nimbrelle
