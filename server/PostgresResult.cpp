#include "server/PostgresResult.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <endian.h>

namespace nimbrelle::server {

namespace {

using Kind = StoreFailure::Kind;

Kind kindOf(std::string_view state)
{
    if (state.empty() || state.starts_with("08")) // no connection
        return Kind::unavailable;
    if (state.starts_with("57") || state.starts_with("40")) // starting, stopping, timed out; a deadlock
        return Kind::unavailable;
    if (state == "53100")
        return Kind::full;
    if (state.starts_with("53") || state == "55P03" || state == "25006") // resources, a lock, a standby
        return Kind::unavailable;
    return state == "XX001" || state == "XX002" ? Kind::damaged : Kind::other;
}

std::string adviceOn(std::string_view state)
{
    if (state == "42501")
        return ". The database must belong to the user who is named in the address of the store";
    return kindOf(state) == Kind::damaged ? ". Put the database back from a backup" : "";
}

} // namespace

StoreFailure postgresFailure(std::string_view state, std::string message)
{
    while (!message.empty() && message.back() == '\n')
        message.pop_back();
    std::ranges::replace_if(
        message, [](char character) { return character == '\n' || character == '\t'; }, ' ');
    return {kindOf(state), "the database reports: " + message + adviceOn(state)};
}

PostgresValue::PostgresValue(std::int64_t value) : m_isNumber(true)
{
    m_number = std::bit_cast<std::array<char, 8>>(htobe64(static_cast<std::uint64_t>(value)));
}

const char *PostgresValue::data() const
{
    if (m_isNull)
        return nullptr;
    if (m_isNumber)
        return m_number.data();
    return m_bytes.data() ? m_bytes.data() : ""; // a null pointer would be NULL and not an empty value
}

int PostgresValue::size() const
{
    return static_cast<int>(m_isNumber ? m_number.size() : m_bytes.size());
}

std::int64_t PostgresResult::number(int row, int column) const
{
    std::uint64_t value = 0;
    if (PQgetlength(m_result.get(), row, column) != sizeof value)
        throw StoreFailure(Kind::other, "the database answers with another type than was asked for");
    std::memcpy(&value, PQgetvalue(m_result.get(), row, column), sizeof value);
    return static_cast<std::int64_t>(be64toh(value));
}

std::string PostgresResult::bytes(int row, int column) const
{
    const auto length = static_cast<std::size_t>(PQgetlength(m_result.get(), row, column));
    return {PQgetvalue(m_result.get(), row, column), length};
}

std::chrono::sys_seconds PostgresResult::time(int row, int column) const
{
    return std::chrono::sys_seconds(std::chrono::seconds(number(row, column)));
}

bool PostgresResult::isFailure() const
{
    const auto status = PQresultStatus(m_result.get());
    return m_result && status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK;
}

void PostgresResult::requireSuccess() const
{
    if (!isFailure())
        return;
    const char *state = PQresultErrorField(m_result.get(), PG_DIAG_SQLSTATE);
    // Without the detail, which may hold a value.
    const char *message = PQresultErrorField(m_result.get(), PG_DIAG_MESSAGE_PRIMARY);
    throw postgresFailure(state ? state : "", message ? message : PQresultErrorMessage(m_result.get()));
}

} // namespace nimbrelle::server
