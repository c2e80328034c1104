#pragma once

#include "frame/Timestamp.h"

#include <QCoro/QCoroTask>

#include <functional>
#include <stop_token>

namespace nimbrelle {

/// The one source of time. Programs take the system's, tests one that they move by hand. Main thread only.
class Clock {
public:
    virtual ~Clock() = default;

    virtual Timestamp now() const = 0;

    /// Calls `then` once, from the event loop, when `delay` has passed (at once when it is not positive).
    virtual void callAfter(std::chrono::milliseconds delay, std::function<void()> then) = 0;

    /// Waits for `delay`, or until `stop` is requested: then it resumes inside that very request. Ask the
    /// token afterwards. The clock must outlive the wait.
    QCoro::Task<> sleep(std::chrono::milliseconds delay, std::stop_token stop);
};

class SystemClock final : public Clock {
public:
    static SystemClock &shared();

    Timestamp now() const override;
    void callAfter(std::chrono::milliseconds delay, std::function<void()> then) override;
};

} // namespace nimbrelle
