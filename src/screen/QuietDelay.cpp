#include "screen/QuietDelay.h"

#include <utility>

namespace nimbrelle {

struct QuietDelay::State {
    Clock &clock;
    std::function<void()> action;
    std::optional<Timestamp> due{}; // absent while nothing is wanted
    std::optional<Timestamp> timerAt{};
    quint64 timer = 0; // the newest; older ones do nothing
};

QuietDelay::QuietDelay(Clock &clock, std::function<void()> action)
    : m_state(new State{clock, std::move(action)})
{
}

void QuietDelay::arm(std::chrono::milliseconds wait)
{
    const Timestamp due = m_state->clock.now() + wait;
    m_state->due = due;
    if (!m_state->timerAt || *m_state->timerAt > due)
        setTimer(m_state, wait);
}

void QuietDelay::cancel()
{
    m_state->due.reset();
}

void QuietDelay::setTimer(const std::shared_ptr<State> &state, std::chrono::milliseconds wait)
{
    state->timerAt = state->clock.now() + wait;
    const quint64 timer = ++state->timer;
    state->clock.callAfter(wait, [weak = std::weak_ptr(state), timer] {
        const auto alive = weak.lock();
        if (!alive || timer != alive->timer)
            return;
        alive->timerAt.reset();
        if (!alive->due)
            return;
        const auto left = *alive->due - alive->clock.now();
        if (left.count() > 0)
            setTimer(alive, std::chrono::ceil<std::chrono::milliseconds>(left));
        else if (std::exchange(alive->due, std::nullopt))
            alive->action();
    });
}

} // namespace nimbrelle
