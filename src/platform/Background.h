#pragma once

#include <QCoro/QCoroTask>

#include <functional>

namespace nimbrelle {

/// Where work is done that would hold up the main thread. All calls on the main thread.
class Background {
public:
    virtual ~Background() = default;

    /// Ends, on the main thread, when `work` has run elsewhere; what that throws is thrown on. What `work`
    /// refers to is its own until then. One piece runs after the other.
    virtual QCoro::Task<> run(std::function<void()> work) = 0;
};

} // namespace nimbrelle
