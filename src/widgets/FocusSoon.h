#pragma once

#include <QCoro/QCoroTask>

#include <functional>
#include <stop_token>

namespace nimbrelle {

class Clock;

/// Gives a field that was just shown the focus, which it may not take at once: runs `action` after 30
/// milliseconds and again after 120, 300 and 600 more, until `isDone` says that it has it, or `stop` is
/// requested.
QCoro::Task<> focusSoon(
    Clock &clock, std::function<void()> action, std::function<bool()> isDone, std::stop_token stop);

} // namespace nimbrelle
