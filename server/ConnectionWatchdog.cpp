#include "server/ConnectionWatchdog.h"

#include "server/Failure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace nimbrelle::server {

namespace {

constexpr std::chrono::seconds lingeringTime{5};
constexpr int maxWaitMilliseconds = 60'000;

int newEvent()
{
    const int event = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (event < 0)
        throw Failure("cannot make an event descriptor; raise the limit on open files");
    return event;
}

// True when the other side has closed, or broken off.
bool drain(int socket)
{
    std::array<char, 64UL * 1024> dropped{};
    for (int round = 0; round < 64; ++round) {
        const ssize_t count = ::recv(socket, dropped.data(), dropped.size(), MSG_DONTWAIT);
        if (count <= 0)
            return count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
    }
    return false;
}

} // namespace

ConnectionWatchdog::ConnectionWatchdog(const Limits &limits)
    : m_limits(limits), m_headTime(limits.headTime), m_wakeEvent(newEvent()), m_thread([this] { run(); })
{
}

ConnectionWatchdog::~ConnectionWatchdog()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
    }
    wake();
    m_thread.join();
    for (const Lingering &each : m_lingering)
        ::close(each.socket);
    ::close(m_wakeEvent);
}

ConnectionWatchdog::Clock::duration ConnectionWatchdog::headTimeAt(const Limits &limits, std::size_t open)
{
    const std::size_t half = limits.capacity / 2;
    if (open <= half)
        return limits.headTime;
    const auto least = limits.headTime / 8;
    const auto left = static_cast<Clock::rep>(limits.capacity - std::min(open, limits.capacity));
    return least + (limits.headTime - least) * left / static_cast<Clock::rep>(limits.capacity - half);
}

ConnectionWatchdog::Entry *ConnectionWatchdog::add(int socket)
{
    const std::lock_guard lock(m_mutex);
    Entry &entry = m_entries.emplace_back();
    entry.m_socket = socket;
    entry.m_headSince = Clock::now();
    wakeIfSooner(entry);
    return &entry;
}

void ConnectionWatchdog::enter(Entry *entry, Phase phase)
{
    const std::lock_guard lock(m_mutex);
    entry->m_phase = phase;
    (phase == Phase::awaitsHead ? entry->m_headSince : entry->m_exchangeSince) = Clock::now();
    wakeIfSooner(*entry);
}

void ConnectionWatchdog::returnToHead(Entry *entry)
{
    const std::lock_guard lock(m_mutex);
    entry->m_phase = Phase::awaitsHead;
    wakeIfSooner(*entry);
}

ConnectionWatchdog::Clock::time_point ConnectionWatchdog::deadlineOf(const Entry &entry) const
{
    if (entry.m_phase == Phase::inExchange)
        return entry.m_exchangeSince + m_limits.bodyTime;
    return entry.m_headSince + headTimeAt(m_limits, m_entries.size());
}

void ConnectionWatchdog::remove(Entry *entry, Close close)
{
    const std::lock_guard lock(m_mutex);
    if (close == Close::lingering && !entry->m_expired && m_lingering.size() < maxLingering) {
        const int copy = ::fcntl(entry->m_socket, F_DUPFD_CLOEXEC, 0);
        if (copy >= 0)
            m_lingering.push_back({.socket = copy, .deadline = Clock::now() + lingeringTime});
        wake();
    }
    m_entries.remove_if([&](const Entry &each) { return &each == entry; });
}

void ConnectionWatchdog::wake()
{
    const std::uint64_t one = 1;
    // A counter that is full wakes as well as one that rises.
    [[maybe_unused]] const ssize_t written = ::write(m_wakeEvent, &one, sizeof one);
}

// Waking the thread for each request would cost more than the request; and for each connection while the pool
// fills, so that others' time grows shorter, as well: it looks again when that has become markedly less.
void ConnectionWatchdog::wakeIfSooner(const Entry &entry)
{
    const auto headTime = headTimeAt(m_limits, m_entries.size());
    if (deadlineOf(entry) < m_nextLook || headTime < m_headTime - m_limits.headTime / 32)
        wake();
}

void ConnectionWatchdog::run()
{
    for (;;) {
        int wait = 0;
        {
            const std::lock_guard lock(m_mutex);
            if (m_stopping)
                return;
            const auto now = Clock::now();
            drainLingering(now);
            wait = shutDownExpired(now);
        }
        waitForEvents(wait);
    }
}

// Returns the milliseconds until the next deadline.
int ConnectionWatchdog::shutDownExpired(Clock::time_point now)
{
    auto next = now + std::chrono::milliseconds(maxWaitMilliseconds);
    m_headTime = headTimeAt(m_limits, m_entries.size());
    for (Entry &entry : m_entries) {
        if (entry.m_expired)
            continue;
        const auto deadline = deadlineOf(entry);
        if (deadline <= now) {
            // The server library sees the end of the stream and closes; the descriptor stays valid until
            // then.
            ::shutdown(entry.m_socket, SHUT_RDWR);
            entry.m_expired = true;
        } else {
            next = std::min(next, deadline);
        }
    }
    for (const Lingering &each : m_lingering)
        next = std::min(next, each.deadline);
    m_nextLook = next;
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(next - now).count());
}

void ConnectionWatchdog::waitForEvents(int milliseconds)
{
    std::vector<pollfd> watched{{.fd = m_wakeEvent, .events = POLLIN, .revents = 0}};
    {
        // Only this thread closes what lingers, so the copies stay valid outside the lock.
        const std::lock_guard lock(m_mutex);
        for (const Lingering &each : m_lingering)
            watched.push_back({.fd = each.socket, .events = POLLIN, .revents = 0});
    }
    ::poll(watched.data(), watched.size(), milliseconds);
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t got = ::read(m_wakeEvent, &count, sizeof count);
}

void ConnectionWatchdog::drainLingering(Clock::time_point now)
{
    std::erase_if(m_lingering, [&](const Lingering &each) {
        if (!drain(each.socket) && each.deadline > now)
            return false;
        ::close(each.socket);
        return true;
    });
}

} // namespace nimbrelle::server
