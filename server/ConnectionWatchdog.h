#pragma once

#include <chrono>
#include <list>
#include <mutex>
#include <thread>

namespace nimbrelle::server {

/// Shuts down connections whose time is up, however busy they look: a time-out that only counts idleness is
/// kept alive for ever by one byte now and then. Calls may come from any thread.
class ConnectionWatchdog {
public:
    using Clock = std::chrono::steady_clock;

    class Entry {
        friend class ConnectionWatchdog;
        int m_socket = -1;
        Clock::time_point m_deadline;
        bool m_expired = false;
    };
    enum class Close { immediate, lingering };

    ConnectionWatchdog();
    ConnectionWatchdog(const ConnectionWatchdog &) = delete;
    ConnectionWatchdog &operator=(const ConnectionWatchdog &) = delete;
    ~ConnectionWatchdog();

    /// The socket stays the caller's, who removes the entry before closing it.
    Entry *add(int socket, Clock::duration timeout);
    /// Counted from now, in place of what is left.
    void setTimeout(Entry *entry, Clock::duration timeout);
    /// A lingering close reads and drops for a moment what the other side still sends, even after the caller
    /// has closed the socket: a close over unread bytes would reset the connection and could destroy the
    /// answer.
    void remove(Entry *entry, Close close);

private:
    struct Lingering {
        int socket = -1;
        Clock::time_point deadline;
    };

    void run();
    void wake();
    void wakeBefore(Clock::time_point deadline);
    int shutDownExpired(Clock::time_point now);
    void waitForEvents(int milliseconds);
    void drainLingering(Clock::time_point now);

    std::mutex m_mutex;
    std::list<Entry> m_entries;
    std::list<Lingering> m_lingering;
    Clock::time_point m_nextLook; ///< when the thread looks next without being woken
    bool m_stopping = false;
    int m_wakeEvent;
    std::thread m_thread;
};

} // namespace nimbrelle::server
