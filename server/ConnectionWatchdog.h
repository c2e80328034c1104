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

    struct Limits {
        Clock::duration headTime; ///< from connect, or the last answer, to the end of a head
        Clock::duration bodyTime; ///< from there to the end of the answer
        std::size_t capacity = 0; ///< connections that there is room for
    };
    enum class Phase { awaitsHead, inExchange };

    class Entry {
        friend class ConnectionWatchdog;
        int m_socket = -1;
        Phase m_phase = Phase::awaitsHead;
        Clock::time_point m_headSince;
        Clock::time_point m_exchangeSince;
        bool m_expired = false;
    };
    enum class Close { immediate, lingering };
    static constexpr std::size_t maxLingering = 64; ///< connections that linger at once

    explicit ConnectionWatchdog(const Limits &limits);
    ConnectionWatchdog(const ConnectionWatchdog &) = delete;
    ConnectionWatchdog &operator=(const ConnectionWatchdog &) = delete;
    ~ConnectionWatchdog();

    /// How long a head may take while so many connections are open: the whole time up to half of the
    /// capacity, and from there less and less, to an eighth. So silent connections, from however many
    /// addresses, can't keep others out for long.
    static Clock::duration headTimeAt(const Limits &limits, std::size_t open);

    /// The socket stays the caller's, who removes the entry before closing it.
    Entry *add(int socket);
    /// Its time is counted from now.
    void enter(Entry *entry, Phase phase);
    /// From the exchange back to the deadline that the head had, as if it had not come yet.
    void returnToHead(Entry *entry);
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
    void wakeIfSooner(const Entry &entry);
    Clock::time_point deadlineOf(const Entry &entry) const;
    int shutDownExpired(Clock::time_point now);
    void waitForEvents(int milliseconds);
    void drainLingering(Clock::time_point now);

    const Limits m_limits;
    std::mutex m_mutex;
    std::list<Entry> m_entries;
    Clock::duration m_headTime; ///< what the thread reckoned with when it last looked
    std::list<Lingering> m_lingering;
    Clock::time_point m_nextLook; ///< when the thread looks next without being woken
    bool m_stopping = false;
    int m_wakeEvent;
    std::thread m_thread;
};

} // namespace nimbrelle::server
