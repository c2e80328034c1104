#pragma once

#include "server/PostgresResult.h"

#include <memory>
#include <set>
#include <span>

namespace nimbrelle::server {

/// A statement that each connection prepares at its first use.
struct PostgresStatement {
    const char *name;
    const char *sql;
};

/// One session with the database, with our settings for durability. Throws StoreFailure; after one of the
/// kind `unavailable` it may be of no more use, see isUsable.
class PostgresConnection {
public:
    /// A statement that takes longer than `timeout` is given up: by the database, and a little later by us,
    /// should the database itself be stuck. Zero: never.
    PostgresConnection(const std::string &url, std::chrono::milliseconds timeout);
    void setTimeout(std::chrono::milliseconds timeout);

    /// False once the connection is lost, also when the database ended it while nobody used it.
    bool isUsable();
    /// The library keeps its buffers as long as the connection, as large as they once had to be.
    bool hasGrown() const { return m_carried > keptBuffers; }

    /// Values: std::int64_t, std::chrono::sys_seconds, text as std::string, PostgresBytes, nullptr.
    template <typename... Values>
    PostgresResult run(const PostgresStatement &statement, const Values &...values);
    /// One or several statements without values, not prepared.
    PostgresResult run(const std::string &sql);

private:
    static constexpr std::size_t keptBuffers = 4UL << 20;

    void requireSent(int sent);
    PostgresResult result();
    PostgresResult runBound(const PostgresStatement &statement, std::span<const PostgresValue> values);
    void waitForAnswer();
    [[noreturn]] void giveUp(const std::string &reason);

    std::unique_ptr<PGconn, decltype(&PQfinish)> m_connection;
    std::set<std::string_view> m_prepared;
    std::chrono::milliseconds m_timeout;
    std::size_t m_carried = 0; ///< bytes of the largest statement or answer
};

template <typename... Values>
PostgresResult PostgresConnection::run(const PostgresStatement &statement, const Values &...values)
{
    const std::array<PostgresValue, sizeof...(Values)> bound{PostgresValue(values)...};
    return runBound(statement, bound);
}

/// All or nothing: without a commit what was done since is undone.
class PostgresTransaction {
public:
    explicit PostgresTransaction(PostgresConnection &connection);
    PostgresTransaction(const PostgresTransaction &) = delete;
    PostgresTransaction &operator=(const PostgresTransaction &) = delete;
    ~PostgresTransaction();
    void commit();

private:
    PostgresConnection &m_connection;
    bool m_open = true;
};

} // namespace nimbrelle::server
