#pragma once

#include <QSocketNotifier>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace nimbrelle {

/// One thread for work that would hold up the main thread. Pieces run one after another. They go over and
/// come back under one lock of our own, which the thread sanitizer sees, unlike the toolkit's event queue.
class WorkThread {
public:
    using Completion = std::function<void()>;
    using Work = std::function<Completion()>;

    WorkThread();
    /// Waits for the piece under way. Those behind it are dropped, and so are completions that have not run.
    ~WorkThread();
    WorkThread(const WorkThread &) = delete;
    WorkThread &operator=(const WorkThread &) = delete;

    /// Runs `work` on the thread, then what it returned on the thread of this object, from its event loop.
    /// What both need moves from one into the other, so that only one thread holds it at a time.
    void run(Work work);

private:
    void workUntilEnd();
    void complete();

    int m_wakeUp; ///< counts the pieces that are done
    QSocketNotifier m_notifier;
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::deque<Work> m_waiting;
    std::vector<Completion> m_done;
    bool m_isEnding = false;
    std::thread m_thread; ///< begins with the first piece
};

} // namespace nimbrelle
