#pragma once

#include "frame/Clock.h"
#include "frame/TaskSlot.h"

namespace nimbrelle {

/// A task that starts once nobody has scheduled it anew for a while. Scheduling costs next to nothing, so
/// that it can follow every move of a mouse: one timer serves a whole burst of them.
class DebouncedTask {
public:
    /// `start` begins the task; it is called from the event loop. `clock` must outlive this.
    DebouncedTask(Clock &clock, std::function<void(std::stop_token)> start);

    /// Stops the task if it runs; the next one starts `wait` from now.
    void schedule(std::chrono::milliseconds wait);
    /// Stops the task if it runs; none starts.
    void cancel();

private:
    QCoro::Task<> waitUntilDue(std::stop_token stop);

    Clock &m_clock;
    const std::function<void(std::stop_token)> m_start;
    std::optional<Timestamp> m_due; // absent while no task is wanted
    std::optional<Timestamp> m_timerAt;
    TaskSlot m_task;
    TaskSlot m_timer;
};

} // namespace nimbrelle
