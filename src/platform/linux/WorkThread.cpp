#include "platform/linux/WorkThread.h"

#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace nimbrelle {

namespace {

int newCounter()
{
    const int counter = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (counter < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    return counter;
}

} // namespace

WorkThread::WorkThread() : m_wakeUp(newCounter()), m_notifier(m_wakeUp, QSocketNotifier::Read)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { complete(); });
}

WorkThread::~WorkThread()
{
    {
        const std::lock_guard guard(m_lock);
        m_isEnding = true;
    }
    m_changed.notify_one();
    if (m_thread.joinable())
        m_thread.join();
    m_notifier.setEnabled(false);
    close(m_wakeUp);
}

void WorkThread::run(Work work)
{
    {
        const std::lock_guard guard(m_lock);
        m_waiting.push_back(std::move(work));
    }
    if (!m_thread.joinable())
        m_thread = std::thread(&WorkThread::workUntilEnd, this);
    m_changed.notify_one();
}

void WorkThread::workUntilEnd()
{
    std::unique_lock guard(m_lock);
    for (;;) {
        m_changed.wait(guard, [this] { return m_isEnding || !m_waiting.empty(); });
        if (m_isEnding)
            return;
        Work work = std::move(m_waiting.front());
        m_waiting.pop_front();
        guard.unlock();
        Completion done = work();
        work = {};
        guard.lock();
        m_done.push_back(std::move(done));
        eventfd_write(m_wakeUp, 1);
    }
}

void WorkThread::complete()
{
    eventfd_t count = 0;
    eventfd_read(m_wakeUp, &count);
    std::vector<Completion> done;
    {
        const std::lock_guard guard(m_lock);
        done.swap(m_done);
    }
    for (const Completion &completion : done)
        completion();
}

} // namespace nimbrelle
