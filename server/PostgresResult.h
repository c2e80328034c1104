#pragma once

#include "server/Store.h"

#include <array>
#include <libpq-fe.h>

namespace nimbrelle::server {

/// What the database reports under this SQLSTATE, with what the operator can do about it. Without a state the
/// connection is lost.
StoreFailure postgresFailure(std::string_view state, std::string message);

/// Bytes to be bound as such; a std::string is bound as text.
struct PostgresBytes {
    std::string_view bytes;
};

/// A value of a statement. Text and bytes are not copied and must outlive it.
class PostgresValue {
public:
    explicit PostgresValue(std::int64_t value);
    explicit PostgresValue(std::chrono::sys_seconds time) : PostgresValue(time.time_since_epoch().count()) { }
    explicit PostgresValue(const std::string &text) : m_bytes(text) { }
    explicit PostgresValue(PostgresBytes value) : m_bytes(value.bytes) { }
    explicit PostgresValue(std::nullptr_t) : m_isNull(true) { }

    /// In the database's binary form.
    const char *data() const;
    int size() const;

private:
    std::array<char, 8> m_number{};
    std::string_view m_bytes;
    bool m_isNumber = false;
    bool m_isNull = false;
};

/// The rows of one statement. Numbers are read from columns of type bigint.
class PostgresResult {
public:
    explicit PostgresResult(PGresult *result) : m_result(result, &PQclear) { }

    bool isPresent() const { return m_result != nullptr; }
    bool isFailure() const;
    std::size_t bytes() const { return PQresultMemorySize(m_result.get()); } ///< in memory
    int rows() const { return PQntuples(m_result.get()); }
    std::int64_t number(int row, int column) const;
    std::string bytes(int row, int column) const;
    bool isNull(int row, int column) const { return PQgetisnull(m_result.get(), row, column) != 0; }
    std::chrono::sys_seconds time(int row, int column) const;

    /// Throws StoreFailure when the statement failed.
    void requireSuccess() const;

private:
    std::unique_ptr<PGresult, decltype(&PQclear)> m_result;
};

} // namespace nimbrelle::server
