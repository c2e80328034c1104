#include "server/SqliteStore.h"

#include "server/SqliteConnection.h"

#include <algorithm>
#include <mutex>

namespace nimbrelle::server {

namespace {

constexpr const char *selectNotebook =
    "SELECT id, name, token_salt, token_hash, version, created_at FROM notebooks ";

// An index finds the row by a part of the hash; whether the token is right is then decided in constant time.
std::string_view selectorOf(const Digest &tokenHash)
{
    return bytesOf(tokenHash).substr(0, 8);
}

std::optional<Digest> digestIn(const BoundStatement &row, int column)
{
    const std::string bytes = row.bytes(column);
    Digest digest{};
    if (row.isNull(column) || bytes.size() != digest.size())
        return std::nullopt;
    std::copy(bytes.begin(), bytes.end(), digest.begin());
    return digest;
}

Notebook notebookIn(const BoundStatement &row)
{
    return {row.number(0), row.bytes(1), row.bytes(2), digestIn(row, 3), row.number(4), row.time(5)};
}

VersionRecord recordIn(const BoundStatement &row)
{
    return {row.number(0), row.time(1), row.number(2), row.number(3), row.number(4) != 0};
}

template <typename Work> auto translated(const std::filesystem::path &file, const Work &work)
{
    try {
        return work();
    } catch (const SQLite::Exception &error) {
        throw storeFailure(file, error);
    }
}

} // namespace

class SqliteStore::Reader {
public:
    explicit Reader(const std::filesystem::path &file)
        : m_connection(file, SqliteConnection::Opening::existing)
    {
        m_connection.requireOurs(file);
    }

    // Held over every use of the statements.
    std::unique_lock<std::mutex> lock() { return std::unique_lock(m_mutex); }
    SqliteConnection &connection() { return m_connection; }

private:
    SqliteConnection m_connection;
    std::mutex m_mutex;

    SQLite::Statement prepared(const std::string &sql) { return {m_connection.database(), sql}; }

public:
    SQLite::Statement setting = prepared("SELECT value FROM settings WHERE key = ?");
    SQLite::Statement all = prepared(std::string(selectNotebook) + "ORDER BY id");
    SQLite::Statement named = prepared(std::string(selectNotebook) + "WHERE name = ?");
    SQLite::Statement ofToken = prepared(std::string(selectNotebook) + "WHERE token_selector = ?");
    SQLite::Statement newest =
        prepared("SELECT version, body FROM versions WHERE notebook = ? ORDER BY version DESC LIMIT 1");
    SQLite::Statement history =
        prepared("SELECT version, written_at, words, bytes, before_loss FROM versions "
                 "WHERE notebook = ? ORDER BY version");
};

class SqliteStore::Writer {
public:
    explicit Writer(const std::filesystem::path &file)
        : m_connection(file, SqliteConnection::Opening::existing)
    {
    }

    std::unique_lock<std::mutex> lock() { return std::unique_lock(m_mutex); }
    SQLite::Transaction begin()
    {
        return SQLite::Transaction(m_connection.database(), SQLite::TransactionBehavior::IMMEDIATE);
    }

    std::int64_t versionOf(std::int64_t notebook)
    {
        BoundStatement row(m_current, notebook);
        return row.step() ? row.number(0) : 0;
    }
    std::optional<NewDocument> bodyOf(std::int64_t notebook, std::int64_t version, std::string &storage)
    {
        BoundStatement row(m_body, notebook, version);
        if (!row.step())
            return std::nullopt;
        storage = row.bytes(0);
        return NewDocument{storage, row.number(1), {}};
    }
    std::int64_t append(std::int64_t notebook, const NewDocument &document);

    void run(const char *sql, const auto &...values)
    {
        SQLite::Statement statement(m_connection.database(), sql);
        BoundStatement(statement, values...).run();
    }

private:
    void markLoss(std::int64_t notebook, const std::vector<VersionRecord> &records, std::int64_t words);
    std::vector<VersionRecord> records(std::int64_t notebook);

    SqliteConnection m_connection;
    std::mutex m_mutex;

    SQLite::Statement prepared(const char *sql) { return {m_connection.database(), sql}; }
    SQLite::Statement m_current = prepared("SELECT version FROM notebooks WHERE id = ?");
    SQLite::Statement m_raise = prepared("UPDATE notebooks SET version = ?2 WHERE id = ?1");
    SQLite::Statement m_insert = prepared(
        "INSERT INTO versions (notebook, version, written_at, words, bytes, body) VALUES (?, ?, ?, ?, ?, ?)");
    SQLite::Statement m_body =
        prepared("SELECT body, words FROM versions WHERE notebook = ? AND version = ?");
    SQLite::Statement m_records =
        prepared("SELECT version, written_at, words, bytes, before_loss FROM versions "
                 "WHERE notebook = ? ORDER BY version");
    SQLite::Statement m_mark =
        prepared("UPDATE versions SET before_loss = 1 WHERE notebook = ? AND version = ?");
    SQLite::Statement m_drop = prepared("DELETE FROM versions WHERE notebook = ? AND version = ?");
};

std::int64_t SqliteStore::Writer::append(std::int64_t notebook, const NewDocument &document)
{
    const std::int64_t version = versionOf(notebook) + 1;
    markLoss(notebook, records(notebook), document.words);
    BoundStatement(m_insert, notebook, version, document.writtenAt, document.words,
        static_cast<std::int64_t>(document.body.size()), BoundStatement::blob(document.body))
        .run();
    BoundStatement(m_raise, notebook, version).run();
    for (const std::int64_t old : HistoryPolicy::versionsToDrop(records(notebook), document.writtenAt))
        BoundStatement(m_drop, notebook, old).run();
    return version;
}

void SqliteStore::Writer::markLoss(
    std::int64_t notebook, const std::vector<VersionRecord> &records, std::int64_t words)
{
    if (!records.empty() && HistoryPolicy::losesThird(records.back().words, words))
        BoundStatement(m_mark, notebook, records.back().version).run();
}

std::vector<VersionRecord> SqliteStore::Writer::records(std::int64_t notebook)
{
    std::vector<VersionRecord> found;
    for (BoundStatement row(m_records, notebook); row.step();)
        found.push_back(recordIn(row));
    return found;
}

void SqliteStore::create(const std::filesystem::path &file)
{
    translated(file, [&] {
        SqliteConnection connection(file, SqliteConnection::Opening::fresh);
        if (connection.isBlank())
            connection.createTables();
    });
}

SqliteStore::SqliteStore(const std::filesystem::path &file, Check check) : m_file(file)
{
    translated(file, [&] {
        m_reader = std::make_unique<Reader>(file);
        const std::string damage = check == Check::quick ? m_reader->connection().damage() : "";
        if (!damage.empty())
            throw damagedStore(file, damage);
        m_writer = std::make_unique<Writer>(file);
    });
}

SqliteStore::~SqliteStore() = default;

std::optional<std::string> SqliteStore::setting(std::string_view key)
{
    return translated(m_file, [&]() -> std::optional<std::string> {
        const auto held = m_reader->lock();
        const std::string name(key);
        BoundStatement row(m_reader->setting, name);
        return row.step() ? std::optional(row.bytes(0)) : std::nullopt;
    });
}

void SqliteStore::setSetting(std::string_view key, std::string_view value)
{
    translated(m_file, [&] {
        const auto held = m_writer->lock();
        m_writer->run("INSERT INTO settings (key, value) VALUES (?, ?) "
                      "ON CONFLICT (key) DO UPDATE SET value = excluded.value",
            std::string(key), std::string(value));
    });
}

std::vector<Notebook> SqliteStore::notebooks()
{
    return translated(m_file, [&] {
        const auto held = m_reader->lock();
        std::vector<Notebook> found;
        for (BoundStatement row(m_reader->all); row.step();)
            found.push_back(notebookIn(row));
        return found;
    });
}

std::optional<Notebook> SqliteStore::notebookNamed(std::string_view name)
{
    return translated(m_file, [&]() -> std::optional<Notebook> {
        const auto held = m_reader->lock();
        const std::string text(name);
        BoundStatement row(m_reader->named, text);
        return row.step() ? std::optional(notebookIn(row)) : std::nullopt;
    });
}

std::optional<Notebook> SqliteStore::notebookOfToken(const Digest &tokenHash)
{
    return translated(m_file, [&]() -> std::optional<Notebook> {
        const auto held = m_reader->lock();
        for (BoundStatement row(m_reader->ofToken, BoundStatement::blob(selectorOf(tokenHash)));
             row.step();) {
            Notebook notebook = notebookIn(row);
            if (notebook.tokenHash && equalInConstantTime(*notebook.tokenHash, tokenHash))
                return notebook;
        }
        return std::nullopt;
    });
}

void SqliteStore::addNotebook(
    std::string_view name, std::string_view salt, const Digest &tokenHash, std::chrono::sys_seconds now)
{
    translated(m_file, [&] {
        const auto held = m_writer->lock();
        m_writer->run("INSERT INTO notebooks (name, created_at, token_salt, token_selector, token_hash) "
                      "VALUES (?, ?, ?, ?, ?)",
            std::string(name), now, BoundStatement::blob(salt), BoundStatement::blob(selectorOf(tokenHash)),
            BoundStatement::blob(bytesOf(tokenHash)));
    });
}

void SqliteStore::setToken(std::int64_t notebook, std::string_view salt, std::optional<Digest> tokenHash)
{
    translated(m_file, [&] {
        const auto held = m_writer->lock();
        constexpr const char *sql =
            "UPDATE notebooks SET token_salt = ?, token_selector = ?, token_hash = ? WHERE id = ?";
        if (tokenHash)
            m_writer->run(sql, BoundStatement::blob(salt), BoundStatement::blob(selectorOf(*tokenHash)),
                BoundStatement::blob(bytesOf(*tokenHash)), notebook);
        else
            m_writer->run(sql, BoundStatement::blob(salt), nullptr, nullptr, notebook);
    });
}

std::shared_ptr<const Document> SqliteStore::read(std::int64_t notebook)
{
    return translated(m_file, [&]() -> std::shared_ptr<const Document> {
        const auto held = m_reader->lock();
        BoundStatement row(m_reader->newest, notebook);
        if (!row.step())
            return nullptr;
        return std::make_shared<const Document>(Document{row.number(0), row.bytes(1)});
    });
}

std::optional<std::int64_t> SqliteStore::write(
    std::int64_t notebook, const Conditions &conditions, const NewDocument &document)
{
    return translated(m_file, [&]() -> std::optional<std::int64_t> {
        const auto held = m_writer->lock();
        auto transaction = m_writer->begin();
        if (!conditions.allowWriteOver(m_writer->versionOf(notebook)))
            return std::nullopt;
        const std::int64_t version = m_writer->append(notebook, document);
        transaction.commit();
        return version;
    });
}

std::vector<VersionRecord> SqliteStore::history(std::int64_t notebook)
{
    return translated(m_file, [&] {
        const auto held = m_reader->lock();
        std::vector<VersionRecord> found;
        for (BoundStatement row(m_reader->history, notebook); row.step();)
            found.push_back(recordIn(row));
        return found;
    });
}

std::optional<std::int64_t> SqliteStore::restore(
    std::int64_t notebook, std::int64_t version, std::chrono::sys_seconds now)
{
    return translated(m_file, [&]() -> std::optional<std::int64_t> {
        const auto held = m_writer->lock();
        auto transaction = m_writer->begin();
        std::string storage;
        auto document = m_writer->bodyOf(notebook, version, storage);
        if (!document)
            return std::nullopt;
        document->writtenAt = now;
        const std::int64_t raised = m_writer->append(notebook, *document);
        transaction.commit();
        return raised;
    });
}

} // namespace nimbrelle::server
