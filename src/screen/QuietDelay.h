#pragma once

#include "frame/Clock.h"

#include <memory>

namespace nimbrelle {

/// Acts once it has been left alone for a while. Arming it anew moves the moment on and costs next to
/// nothing, so that it can follow every move of a mouse: at most one timer is set for a whole stretch of
/// them.
class QuietDelay {
public:
    /// `clock` must outlive it; `action` runs from the event loop.
    QuietDelay(Clock &clock, std::function<void()> action);

    /// Acts `wait` from now, and not before.
    void arm(std::chrono::milliseconds wait);
    void cancel();

private:
    struct State;
    static void setTimer(const std::shared_ptr<State> &state, std::chrono::milliseconds wait);

    std::shared_ptr<State> m_state; // a timer that outlives us finds it gone
};

} // namespace nimbrelle
