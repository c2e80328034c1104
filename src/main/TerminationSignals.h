#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace nimbrelle {

/// Turns SIGTERM, SIGINT and SIGHUP into a call from the event loop, so that a session that ends or a user at
/// the terminal closes the program in good order. One object in a process.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> terminate);
    ~TerminationSignals();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace nimbrelle
