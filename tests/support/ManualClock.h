#pragma once

#include "frame/Clock.h"

#include <vector>

namespace nimbrelle {

/// Stands still until a test moves it; what falls due on the way runs inside advance(), in order of time.
class ManualClock final : public Clock {
public:
    explicit ManualClock(Timestamp start = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"}))
        : m_now(start)
    {
    }

    Timestamp now() const override { return m_now; }
    void callAfter(std::chrono::milliseconds delay, std::function<void()> then) override;

    void advance(std::chrono::microseconds by);
    /// Moves without running what falls due: a clock set by hand, forward or back.
    void set(Timestamp time) { m_now = time; }
    qsizetype pending() const { return static_cast<qsizetype>(m_pending.size()); }

private:
    struct Pending {
        Timestamp due;
        std::function<void()> then;
    };

    Timestamp m_now;
    std::vector<Pending> m_pending;
};

} // namespace nimbrelle
