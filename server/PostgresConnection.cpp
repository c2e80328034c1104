#include "server/PostgresConnection.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>

namespace nimbrelle::server {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// How much later than the database we give a statement up.
constexpr milliseconds extraPatience{3'000};

constexpr int binaryFormat = 1;

// What the address says of these goes before. They find out in seconds that the other machine is gone.
constexpr std::array<const char *, 7> defaultKeys{"client_encoding", "connect_timeout", "keepalives_idle",
    "keepalives_interval", "keepalives_count", "tcp_user_timeout", "application_name"};
constexpr std::array<const char *, 7> defaultValues{"UTF8", "5", "10", "5", "3", "15000", "nimbrelle-server"};

// A role or database may have been told not to wait for the disk; what we acknowledge must be on it.
constexpr const char *durability = "SELECT set_config('synchronous_commit', 'on', false) WHERE "
                                   "current_setting('synchronous_commit') = 'off'";

// Later keys of the list win over earlier ones, and "dbname" may hold a whole address.
PGconn *connected(const std::string &url)
{
    std::array<const char *, defaultKeys.size() + 2> keys{};
    std::array<const char *, defaultKeys.size() + 2> values{};
    std::ranges::copy(defaultKeys, keys.begin());
    std::ranges::copy(defaultValues, values.begin());
    keys[defaultKeys.size()] = "dbname";
    values[defaultKeys.size()] = url.c_str();
    return PQconnectdbParams(keys.data(), values.data(), 1);
}

std::string timeoutSetting(milliseconds timeout)
{
    return "SET statement_timeout = " + std::to_string(timeout.count());
}

// 1: ready, 0: not in time, -1: never.
int waitFor(int socket, short events, milliseconds time)
{
    pollfd watched{.fd = socket, .events = events, .revents = 0};
    int count = 0;
    do
        count = ::poll(&watched, 1, time.count() < 0 ? -1 : static_cast<int>(time.count()));
    while (count < 0 && errno == EINTR);
    return count;
}

} // namespace

PostgresConnection::PostgresConnection(const std::string &url, milliseconds timeout)
    : m_connection(connected(url), &PQfinish), m_timeout(timeout)
{
    if (!m_connection || PQstatus(m_connection.get()) != CONNECTION_OK)
        throw postgresFailure("", m_connection ? PQerrorMessage(m_connection.get()) : "out of memory");
    PQsetnonblocking(m_connection.get(), 1);
    PQsetNoticeProcessor(
        m_connection.get(), [](void *, const char *) {}, nullptr);
    run("SET client_min_messages = warning; " + timeoutSetting(timeout) + "; " + durability);
}

void PostgresConnection::setTimeout(milliseconds timeout)
{
    run(timeoutSetting(timeout));
    m_timeout = timeout;
}

bool PostgresConnection::isUsable()
{
    // Between statements nothing comes but parting words, or a notice that isn't worth telling from them.
    if (waitFor(PQsocket(m_connection.get()), POLLIN, milliseconds(0)) != 0)
        return false;
    return PQstatus(m_connection.get()) == CONNECTION_OK
        && PQtransactionStatus(m_connection.get()) == PQTRANS_IDLE;
}

void PostgresConnection::giveUp(const std::string &reason)
{
    // The statement may still be under way over there: nobody else may use this connection.
    m_connection.reset();
    throw StoreFailure(StoreFailure::Kind::unavailable, reason);
}

void PostgresConnection::waitForAnswer()
{
    const auto end = Clock::now() + m_timeout + extraPatience;
    const auto remaining = [&] {
        if (m_timeout.count() == 0)
            return milliseconds(-1);
        return std::max(milliseconds(0), std::chrono::duration_cast<milliseconds>(end - Clock::now()));
    };
    for (;;) {
        const int unsent = PQflush(m_connection.get());
        if (unsent == 0 && PQisBusy(m_connection.get()) == 0)
            return;
        if (unsent < 0)
            return; // the reason comes with the result
        const auto events = static_cast<short>(unsent > 0 ? POLLIN | POLLOUT : POLLIN);
        if (waitFor(PQsocket(m_connection.get()), events, remaining()) == 0)
            giveUp("the database does not answer");
        if (PQconsumeInput(m_connection.get()) == 0)
            return;
    }
}

PostgresResult PostgresConnection::result()
{
    PostgresResult last(nullptr);
    for (;;) {
        waitForAnswer();
        PostgresResult next(PQgetResult(m_connection.get()));
        if (!next.isPresent())
            break;
        if (!last.isFailure()) // of several statements the first that fails ends all
            last = std::move(next);
    }
    if (!last.isPresent())
        throw postgresFailure("", PQerrorMessage(m_connection.get()));
    last.requireSuccess();
    m_carried = std::max(m_carried, last.bytes());
    return last;
}

PostgresResult PostgresConnection::run(const std::string &sql)
{
    requireSent(PQsendQuery(m_connection.get(), sql.c_str()));
    return result();
}

PostgresResult PostgresConnection::runBound(
    const PostgresStatement &statement, std::span<const PostgresValue> values)
{
    if (!m_prepared.contains(statement.name)) {
        requireSent(PQsendPrepare(m_connection.get(), statement.name, statement.sql, 0, nullptr));
        result();
        m_prepared.insert(statement.name);
    }
    std::vector<const char *> data;
    std::vector<int> sizes;
    std::size_t sent = 0;
    for (const PostgresValue &value : values) {
        data.push_back(value.data());
        sizes.push_back(value.size());
        sent += static_cast<std::size_t>(value.size());
    }
    m_carried = std::max(m_carried, sent);
    const std::vector<int> formats(values.size(), binaryFormat);
    requireSent(PQsendQueryPrepared(m_connection.get(), statement.name, static_cast<int>(values.size()),
        data.data(), sizes.data(), formats.data(), binaryFormat));
    return result();
}

void PostgresConnection::requireSent(int sent)
{
    if (sent == 0)
        throw postgresFailure("", PQerrorMessage(m_connection.get()));
}

PostgresTransaction::PostgresTransaction(PostgresConnection &connection) : m_connection(connection)
{
    m_connection.run("BEGIN");
}

PostgresTransaction::~PostgresTransaction()
{
    try {
        if (m_open)
            m_connection.run("ROLLBACK");
    } catch (const StoreFailure &) {
        // The connection is lost, and the database rolls back by itself.
    }
}

void PostgresTransaction::commit()
{
    m_open = false;
    m_connection.run("COMMIT");
}

} // namespace nimbrelle::server
