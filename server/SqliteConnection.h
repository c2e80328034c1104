#pragma once

#include "server/Store.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <filesystem>

namespace nimbrelle::server {

/// What SQLite reports, with what the operator can do about it.
StoreFailure damagedStore(const std::filesystem::path &file, const std::string &reason);
StoreFailure storeFailure(const std::filesystem::path &file, const SQLite::Exception &error);

/// An open database with our settings for durability. Throws SQLite::Exception, and StoreFailure when the
/// file is another program's or a newer version's.
class SqliteConnection {
public:
    enum class Opening { existing, fresh };
    SqliteConnection(const std::filesystem::path &file, Opening opening);

    SQLite::Statement prepared(std::string_view sql, std::string_view more = {});
    /// Runs a statement once, with values as BoundStatement takes them.
    void run(const char *sql, const auto &...values);
    /// Takes the write lock at once; without a commit the transaction is rolled back.
    SQLite::Transaction begin();

    bool isEmpty();
    void createTables();
    /// SQLite's own words on what is damaged, or nothing.
    std::string quickCheck();

private:
    void requireSupported(const std::filesystem::path &file);
    /// Brings an earlier version's tables to this one's, in one transaction.
    void migrate();

    SQLite::Database m_database;
};

/// Bytes to be bound as such; a std::string is bound as text.
struct Blob {
    std::string_view bytes;
};

/// A prepared statement in use: bound from left to right, and ready for the next user when this goes.
/// Text and bytes are bound without a copy and must outlive it.
class BoundStatement {
public:
    template <typename... Values>
    explicit BoundStatement(SQLite::Statement &statement, const Values &...values) : m_statement(statement)
    {
        (bind(values), ...);
    }
    BoundStatement(const BoundStatement &) = delete;
    BoundStatement &operator=(const BoundStatement &) = delete;
    ~BoundStatement();

    /// Moves on to the next row; false when there is none.
    bool step() { return m_statement.executeStep(); }
    /// How many rows were changed.
    int run() { return m_statement.exec(); }

    std::int64_t number(int column) const { return m_statement.getColumn(column).getInt64(); }
    std::string bytes(int column) const { return m_statement.getColumn(column).getString(); }
    bool isNull(int column) const { return m_statement.getColumn(column).isNull(); }
    std::chrono::sys_seconds time(int column) const;

private:
    void bind(std::int64_t value) { m_statement.bind(++m_bound, value); }
    void bind(std::chrono::sys_seconds time) { bind(std::int64_t{time.time_since_epoch().count()}); }
    void bind(Blob blob);
    void bind(const std::string &text) { m_statement.bindNoCopy(++m_bound, text); }
    void bind(std::nullptr_t) { m_statement.bind(++m_bound); }

    SQLite::Statement &m_statement;
    int m_bound = 0;
};

void SqliteConnection::run(const char *sql, const auto &...values)
{
    SQLite::Statement statement(m_database, sql);
    BoundStatement(statement, values...).run();
}

} // namespace nimbrelle::server
