#pragma once

#include <chrono>
#include <list>
#include <mutex>
#include <thread>

namespace nimbrelle::server {

/// Cuts connections whose time is up, however busy they look: a time-out that only counts idleness is kept
/// alive for ever by one byte now and then. Calls may come from any thread.
class ConnectionWatch {
public:
    using Clock = std::chrono::steady_clock;

    class Entry {
        friend class ConnectionWatch;
        int m_socket = -1;
        Clock::time_point m_deadline;
        bool m_cut = false;
    };
    enum class Ending { plain, lingering };

    ConnectionWatch();
    ConnectionWatch(const ConnectionWatch &) = delete;
    ConnectionWatch &operator=(const ConnectionWatch &) = delete;
    ~ConnectionWatch();

    /// The socket stays the caller's, who removes the entry before closing it.
    Entry *add(int socket, Clock::duration time);
    /// The time counts from now.
    void allow(Entry *entry, Clock::duration time);
    /// A lingering end reads and drops for a moment what the other side still sends, even after the caller
    /// has closed the socket: a close over unread bytes would reset the connection and could destroy the
    /// answer.
    void remove(Entry *entry, Ending ending);

private:
    struct Lingering {
        int socket = -1;
        Clock::time_point deadline;
    };

    void run();
    void wake();
    void wakeBefore(Clock::time_point deadline);
    int cutLate(Clock::time_point now);
    void waitForEvents(int milliseconds);
    void dropInput(Clock::time_point now);

    std::mutex m_mutex;
    std::list<Entry> m_entries;
    std::list<Lingering> m_lingering;
    Clock::time_point m_nextLook; ///< when the thread looks next without being woken
    bool m_stopping = false;
    int m_wakeEvent;
    std::thread m_thread;
};

} // namespace nimbrelle::server
