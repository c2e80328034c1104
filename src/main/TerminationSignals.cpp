#include "main/TerminationSignals.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace nimbrelle {

namespace {

int ends[2] = {-1, -1};

void handleSignal(int)
{
    // Nothing else is safe inside a signal handler; and what it interrupted must not see our errno.
    const int before = errno;
    const char mark = 0;
    [[maybe_unused]] const auto written = ::write(ends[1], &mark, 1);
    errno = before;
}

void handle(void (*handler)(int))
{
    for (const int each : {SIGTERM, SIGINT, SIGHUP})
        std::signal(each, handler);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate)
{
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // the default then ends the process, and no file suffers from that
    m_notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(
        m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [terminate = std::move(terminate)] {
            char mark = 0;
            [[maybe_unused]] const auto read = ::read(ends[0], &mark, 1);
            terminate();
        });
    handle(&handleSignal);
}

TerminationSignals::~TerminationSignals()
{
    handle(SIG_DFL);
    m_notifier.reset();
    for (int &end : ends) {
        ::close(end);
        end = -1;
    }
}

} // namespace nimbrelle
