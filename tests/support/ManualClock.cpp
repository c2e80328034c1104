#include "support/ManualClock.h"

#include <algorithm>

namespace nimbrelle {

void ManualClock::callAfter(std::chrono::milliseconds delay, std::function<void()> then)
{
    m_pending.push_back({m_now + delay, std::move(then)});
}

void ManualClock::advance(std::chrono::microseconds by)
{
    const Timestamp end = m_now + by;
    const auto earlier = [](const Pending &a, const Pending &b) { return a.due < b.due; };
    for (;;) {
        const auto next = std::min_element(m_pending.begin(), m_pending.end(), earlier);
        if (next == m_pending.end() || next->due > end)
            break;
        m_now = std::max(m_now, next->due);
        const auto then = std::move(next->then);
        m_pending.erase(next);
        then();
    }
    m_now = end;
}

} // namespace nimbrelle
