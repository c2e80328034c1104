#include "server/SqliteConnection.h"

#include <algorithm>
#include <sqlite3.h>

namespace nimbrelle::server {

namespace {

constexpr int applicationId = 0x4e6d6253; // "NmbS", which tells our file from another program's
constexpr int schemaVersion = 2;
constexpr int busyMilliseconds = 10'000;

constexpr const char *tables = R"(
    CREATE TABLE settings (key TEXT PRIMARY KEY, value TEXT NOT NULL);
    CREATE TABLE notebooks (
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        name TEXT NOT NULL UNIQUE,
        created_at INTEGER NOT NULL,
        token_salt BLOB NOT NULL,
        token_selector BLOB,
        token_hash BLOB,
        version INTEGER NOT NULL DEFAULT 0,
        quota_bytes INTEGER NOT NULL DEFAULT 0,
        quota_versions INTEGER NOT NULL DEFAULT 0
    );
    CREATE INDEX notebooks_by_token ON notebooks (token_selector);
    CREATE TABLE versions (
        notebook INTEGER NOT NULL REFERENCES notebooks (id),
        version INTEGER NOT NULL,
        written_at INTEGER NOT NULL,
        words INTEGER NOT NULL,
        bytes INTEGER NOT NULL,
        before_loss INTEGER NOT NULL DEFAULT 0,
        body BLOB NOT NULL,
        PRIMARY KEY (notebook, version)
    );
)";

// To version 2.
constexpr const char *addQuotas = R"(
    ALTER TABLE notebooks ADD COLUMN quota_bytes INTEGER NOT NULL DEFAULT 0;
    ALTER TABLE notebooks ADD COLUMN quota_versions INTEGER NOT NULL DEFAULT 0;
)";

} // namespace

StoreFailure damagedStore(const std::filesystem::path &file, const std::string &reason)
{
    return {StoreFailure::Kind::damaged,
        "the database " + file.string() + " is damaged (" + reason
            + "). Stop the server, keep a copy of the folder, and put the file back from a backup or try: "
              "sqlite3 "
            + file.filename().string() + " .recover | sqlite3 recovered.db"};
}

StoreFailure storeFailure(const std::filesystem::path &file, const SQLite::Exception &error)
{
    const std::string reason = error.getErrorStr();
    switch (error.getErrorCode()) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return damagedStore(file, reason);
    case SQLITE_FULL:
        return {StoreFailure::Kind::full, "no room is left on the disk of " + file.string() + "; make some"};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {StoreFailure::Kind::other,
            "another program holds the database " + file.string() + "; end it and try again"};
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return {StoreFailure::Kind::other,
            "cannot open " + file.string() + " for writing (" + reason
                + "). Check that it is there and that it and its folder belong to the user who runs this "
                  "command."};
    default:
        // The file was emptied or put in the place of ours; its tables are made by init only.
        if (std::string_view(error.what()).starts_with("no such table"))
            return damagedStore(file, error.what());
        return {StoreFailure::Kind::other, "the database " + file.string() + " reports: " + error.what()};
    }
}

SqliteConnection::SqliteConnection(const std::filesystem::path &file, Opening opening)
    : m_database(file.string(),
        SQLite::OPEN_READWRITE | (opening == Opening::fresh ? SQLite::OPEN_CREATE : 0), busyMilliseconds)
{
    // Before anything is changed in it.
    if (opening == Opening::existing || !isEmpty())
        requireSupported(file);
    // Documents are large: with fewer and larger pages a write costs less. Of effect only in a fresh file.
    m_database.exec("PRAGMA page_size = 16384");
    // An acknowledged write must survive a loss of power, so each commit flushes the log.
    m_database.exec("PRAGMA journal_mode = WAL");
    m_database.exec("PRAGMA synchronous = FULL");
    m_database.exec("PRAGMA foreign_keys = ON");
    // Else, where the system's library is built so, a version that goes is written over with zeros: as many
    // bytes again for each write. The next version takes its pages anyway.
    m_database.exec("PRAGMA secure_delete = FAST");
    m_database.exec("PRAGMA journal_size_limit = 67108864");
    if (opening == Opening::existing || !isEmpty())
        migrate();
}

SQLite::Statement SqliteConnection::prepared(std::string_view sql, std::string_view more)
{
    return {m_database, std::string(sql) + std::string(more)};
}

SQLite::Transaction SqliteConnection::begin()
{
    return SQLite::Transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
}

void SqliteConnection::requireSupported(const std::filesystem::path &file)
{
    if (isEmpty())
        throw StoreFailure(StoreFailure::Kind::other,
            file.string() + " is empty, as an interrupted init leaves it; run: nimbrelle-server init");
    if (m_database.execAndGet("PRAGMA application_id").getInt() != applicationId)
        throw StoreFailure(StoreFailure::Kind::other,
            file.string() + " is not a notebook database; name the right folder with --data DIR");
    if (m_database.execAndGet("PRAGMA user_version").getInt() > schemaVersion)
        throw StoreFailure(StoreFailure::Kind::other,
            file.string() + " was made by a newer nimbrelle-server; install that version or a later one");
}

void SqliteConnection::migrate()
{
    const auto version = [&] { return m_database.execAndGet("PRAGMA user_version").getInt(); };
    if (version() == schemaVersion)
        return;
    auto transaction = begin();
    if (version() < schemaVersion) { // else another process was faster
        m_database.exec(addQuotas);
        m_database.exec("PRAGMA user_version = " + std::to_string(schemaVersion));
    }
    transaction.commit();
}

bool SqliteConnection::isEmpty()
{
    return m_database.execAndGet("SELECT count(*) FROM sqlite_master").getInt() == 0;
}

void SqliteConnection::createTables()
{
    auto transaction = begin();
    m_database.exec("PRAGMA application_id = " + std::to_string(applicationId));
    m_database.exec("PRAGMA user_version = " + std::to_string(schemaVersion));
    m_database.exec(tables);
    transaction.commit();
}

std::string SqliteConnection::quickCheck()
{
    std::string verdict = m_database.execAndGet("PRAGMA quick_check(1)").getString();
    std::ranges::replace(verdict, '\n', ' ');
    return verdict == "ok" ? "" : verdict;
}

BoundStatement::~BoundStatement()
{
    m_statement.tryReset();
    // With no values bound there is nothing to clear, and clearing can't fail for a valid statement.
    m_statement.clearBindings();
}

std::chrono::sys_seconds BoundStatement::time(int column) const
{
    return std::chrono::sys_seconds(std::chrono::seconds(number(column)));
}

void BoundStatement::bind(Blob blob)
{
    m_statement.bindNoCopy(
        ++m_bound, static_cast<const void *>(blob.bytes.data()), static_cast<int>(blob.bytes.size()));
}

} // namespace nimbrelle::server
