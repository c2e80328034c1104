#pragma once

#include "server/PostgresConnection.h"

#include <condition_variable>
#include <functional>
#include <mutex>

namespace nimbrelle::server {

/// Connections to one database, made when they are needed and kept for the next who needs one. Throws
/// StoreFailure.
class PostgresPool {
public:
    using Clock = std::chrono::steady_clock;
    struct Settings {
        std::string url;
        std::size_t connections = 8; ///< at most
        std::chrono::milliseconds statementTimeout{10'000};
        std::chrono::milliseconds waitTimeout{5'000}; ///< for a connection that others have
        /// After the database was not to be reached: nobody waits for another attempt until then.
        std::chrono::milliseconds retryAfter{1'000};
        /// How long one attempt keeps others from trying as well.
        std::chrono::milliseconds attemptTime{10'000};
        std::function<Clock::time_point()> now = &Clock::now;
    };
    /// Called with each new connection.
    using Prepare = std::function<void(PostgresConnection &)>;

    PostgresPool(Settings settings, Prepare prepare);

    /// What `work` makes of a connection that nobody else uses meanwhile.
    auto with(const auto &work)
    {
        const Lease lease(*this);
        return work(lease.connection());
    }

private:
    class Lease {
    public:
        explicit Lease(PostgresPool &pool) : m_pool(pool), m_connection(pool.take()) { }
        Lease(const Lease &) = delete;
        Lease &operator=(const Lease &) = delete;
        ~Lease() { m_pool.giveBack(std::move(m_connection)); }
        PostgresConnection &connection() const { return *m_connection; }

    private:
        PostgresPool &m_pool;
        std::unique_ptr<PostgresConnection> m_connection;
    };

    std::unique_ptr<PostgresConnection> take();
    std::unique_ptr<PostgresConnection> connect();
    std::unique_ptr<PostgresConnection> attempt();
    void refuseWhileAway();
    void giveBack(std::unique_ptr<PostgresConnection> connection);
    void reserve();
    std::unique_ptr<PostgresConnection> takeIdle();

    const Settings m_settings;
    const Prepare m_prepare;
    std::mutex m_mutex;
    std::condition_variable m_returned;
    std::vector<std::unique_ptr<PostgresConnection>> m_idle;
    std::size_t m_inUse = 0;

    /// Why the database could not be reached at the last attempt; empty when it could.
    std::string m_lastFailure;
    Clock::time_point m_retryAt;
};

} // namespace nimbrelle::server
