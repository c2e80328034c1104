#include "server/SqliteStore.h"

#include "server/SqliteConnection.h"

#include <mutex>

namespace nimbrelle::server {

namespace {

constexpr std::string_view selectNotebook =
    "SELECT id, name, token_salt, token_hash, version, created_at, quota_bytes, quota_versions "
    "FROM notebooks ";

constexpr const char *setSettingSql = "INSERT INTO settings (key, value) VALUES (?, ?) "
                                      "ON CONFLICT (key) DO UPDATE SET value = excluded.value";

Notebook notebookIn(const BoundStatement &row)
{
    return {.id = row.number(0),
        .name = row.bytes(1),
        .tokenSalt = row.bytes(2),
        .tokenHash = digestOf(row.bytes(3)),
        .version = row.number(4),
        .createdAt = row.time(5),
        .quota = {.bytes = limitIn(row.number(6)), .versions = limitIn(row.number(7))}};
}

VersionRecord recordIn(const BoundStatement &row)
{
    return {.version = row.number(0),
        .writtenAt = row.time(1),
        .words = row.number(2),
        .bytes = row.number(3),
        .beforeLoss = row.number(4) != 0};
}

std::shared_ptr<const Document> documentIn(BoundStatement &&row)
{
    if (!row.step())
        return nullptr;
    return std::make_shared<const Document>(
        Document{.version = row.number(0), .writtenAt = row.time(2), .body = row.bytes(1)});
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

// A connection with the statements that are used on each request. The mutex is held over every use.
struct SqliteStore::Reader {
    explicit Reader(const std::filesystem::path &file) : connection(file, SqliteConnection::Opening::existing)
    {
    }

    SqliteConnection connection;
    std::mutex mutex;

    SQLite::Statement setting = connection.prepared("SELECT value FROM settings WHERE key = ?");
    SQLite::Statement settings = connection.prepared("SELECT key, value FROM settings");
    SQLite::Statement state = connection.prepared(
        "SELECT name LIKE 'moving %' FROM sqlite_master "
        "WHERE type = 'trigger' AND (name LIKE 'moving %' OR name LIKE 'sealed %') LIMIT 1");
    SQLite::Statement all = connection.prepared(selectNotebook, "ORDER BY id");
    SQLite::Statement named = connection.prepared(selectNotebook, "WHERE name = ?");
    SQLite::Statement ofToken = connection.prepared(selectNotebook, "WHERE token_selector = ?");
    SQLite::Statement version = connection.prepared("SELECT version FROM notebooks WHERE id = ?");
    SQLite::Statement newest = connection.prepared(
        "SELECT version, body, written_at FROM versions WHERE notebook = ? ORDER BY version DESC LIMIT 1");
    SQLite::Statement document = connection.prepared(
        "SELECT version, body, written_at FROM versions WHERE notebook = ? AND version = ?");
    SQLite::Statement history =
        connection.prepared("SELECT version, written_at, words, bytes, before_loss FROM versions "
                            "WHERE notebook = ? ORDER BY version");
    SQLite::Statement newestRecord =
        connection.prepared("SELECT version, written_at, words, bytes, before_loss FROM versions "
                            "WHERE notebook = ? ORDER BY version DESC LIMIT 1");
};

struct SqliteStore::Writer {
    explicit Writer(const std::filesystem::path &file) : connection(file, SqliteConnection::Opening::existing)
    {
    }

    SqliteConnection connection;
    std::mutex mutex;

    SQLite::Statement raise =
        connection.prepared("UPDATE notebooks SET version = version + 1 WHERE id = ? AND version = ?");
    SQLite::Statement insert = connection.prepared(
        "INSERT INTO versions (notebook, version, written_at, words, bytes, body) VALUES (?, ?, ?, ?, ?, ?)");
    SQLite::Statement mark =
        connection.prepared("UPDATE versions SET before_loss = 1 WHERE notebook = ? AND version = ?");
    SQLite::Statement drop = connection.prepared("DELETE FROM versions WHERE notebook = ? AND version = ?");
};

template <typename Work> auto SqliteStore::reading(const Work &work)
{
    return translated(m_file, [&] {
        const std::lock_guard lock(m_reader->mutex);
        return work(*m_reader);
    });
}

template <typename Work> auto SqliteStore::writing(const Work &work)
{
    return translated(m_file, [&] {
        const std::lock_guard lock(m_writer->mutex);
        return work(*m_writer);
    });
}

void SqliteStore::create(const std::filesystem::path &file)
{
    translated(file, [&] {
        SqliteConnection connection(file, SqliteConnection::Opening::fresh);
        if (connection.isEmpty())
            connection.createTables();
    });
}

SqliteStore::SqliteStore(const std::filesystem::path &file) : m_file(file)
{
    translated(file, [&] {
        m_reader = std::make_unique<Reader>(file);
        m_writer = std::make_unique<Writer>(file);
    });
}

SqliteStore::~SqliteStore() = default;

void SqliteStore::check()
{
    if (const StoreState current = state(); current != StoreState::open)
        throw StoreFailure(StoreFailure::Kind::other, std::string(refusalOf(current)));
    reading([&](Reader &reader) {
        const std::string damage = reader.connection.quickCheck();
        if (!damage.empty())
            throw damagedStore(m_file, damage);
    });
}

std::optional<std::string> SqliteStore::setting(std::string_view key)
{
    return reading([&](Reader &reader) {
        const std::string name(key);
        BoundStatement row(reader.setting, name);
        return row.step() ? std::optional(row.bytes(0)) : std::nullopt;
    });
}

void SqliteStore::setSetting(std::string_view key, std::string_view value)
{
    writing(
        [&](Writer &writer) { writer.connection.run(setSettingSql, std::string(key), std::string(value)); });
}

std::map<std::string, std::string> SqliteStore::settings()
{
    return reading([&](Reader &reader) {
        std::map<std::string, std::string> found;
        for (BoundStatement row(reader.settings); row.step();)
            found.emplace(row.bytes(0), row.bytes(1));
        return found;
    });
}

std::vector<Notebook> SqliteStore::notebooks()
{
    return reading([&](Reader &reader) {
        std::vector<Notebook> found;
        for (BoundStatement row(reader.all); row.step();)
            found.push_back(notebookIn(row));
        return found;
    });
}

std::optional<Notebook> SqliteStore::notebookNamed(std::string_view name)
{
    return reading([&](Reader &reader) {
        const std::string text(name);
        BoundStatement row(reader.named, text);
        return row.step() ? std::optional(notebookIn(row)) : std::nullopt;
    });
}

std::optional<Notebook> SqliteStore::notebookOfToken(const Digest &tokenHash)
{
    return reading([&](Reader &reader) -> std::optional<Notebook> {
        for (BoundStatement row(reader.ofToken, Blob{.bytes = selectorOf(tokenHash)}); row.step();) {
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
    writing([&](Writer &writer) {
        writer.connection.run(
            "INSERT INTO notebooks (name, created_at, token_salt, token_selector, token_hash) "
            "VALUES (?, ?, ?, ?, ?)",
            std::string(name), now, Blob{.bytes = salt}, Blob{.bytes = selectorOf(tokenHash)},
            Blob{.bytes = bytesOf(tokenHash)});
    });
}

void SqliteStore::setToken(std::int64_t notebook, std::string_view salt, std::optional<Digest> tokenHash)
{
    writing([&](Writer &writer) {
        constexpr const char *sql =
            "UPDATE notebooks SET token_salt = ?, token_selector = ?, token_hash = ? WHERE id = ?";
        if (tokenHash)
            writer.connection.run(sql, Blob{.bytes = salt}, Blob{.bytes = selectorOf(*tokenHash)},
                Blob{.bytes = bytesOf(*tokenHash)}, notebook);
        else
            writer.connection.run(sql, Blob{.bytes = salt}, nullptr, nullptr, notebook);
    });
}

void SqliteStore::setQuota(std::int64_t notebook, const OwnQuota &quota)
{
    writing([&](Writer &writer) {
        writer.connection.run("UPDATE notebooks SET quota_bytes = ?, quota_versions = ? WHERE id = ?",
            storedLimit(quota.bytes), storedLimit(quota.versions), notebook);
    });
}

std::optional<std::int64_t> SqliteStore::version(std::int64_t notebook)
{
    return reading([&](Reader &reader) {
        BoundStatement row(reader.version, notebook);
        return row.step() ? std::optional(row.number(0)) : std::nullopt;
    });
}

std::shared_ptr<const Document> SqliteStore::newestDocument(std::int64_t notebook)
{
    return reading([&](Reader &reader) { return documentIn(BoundStatement(reader.newest, notebook)); });
}

std::shared_ptr<const Document> SqliteStore::document(std::int64_t notebook, std::int64_t version)
{
    return reading(
        [&](Reader &reader) { return documentIn(BoundStatement(reader.document, notebook, version)); });
}

std::vector<VersionRecord> SqliteStore::history(std::int64_t notebook)
{
    return reading([&](Reader &reader) {
        std::vector<VersionRecord> found;
        for (BoundStatement row(reader.history, notebook); row.step();)
            found.push_back(recordIn(row));
        return found;
    });
}

std::optional<VersionRecord> SqliteStore::newestRecord(std::int64_t notebook)
{
    return reading([&](Reader &reader) {
        BoundStatement row(reader.newestRecord, notebook);
        return row.step() ? std::optional(recordIn(row)) : std::nullopt;
    });
}

bool SqliteStore::append(
    std::int64_t notebook, std::int64_t expected, const NewDocument &document, const HistoryChange &change)
{
    return writing([&](Writer &writer) {
        auto transaction = writer.connection.begin();
        if (BoundStatement(writer.raise, notebook, expected).run() == 0)
            return false;
        BoundStatement(writer.insert, notebook, expected + 1, document.writtenAt, document.words,
            static_cast<std::int64_t>(document.body.size()), Blob{.bytes = document.body})
            .run();
        if (change.beforeLoss)
            BoundStatement(writer.mark, notebook, *change.beforeLoss).run();
        for (const std::int64_t version : change.dropped)
            BoundStatement(writer.drop, notebook, version).run();
        transaction.commit();
        return true;
    });
}

void SqliteStore::drop(std::int64_t notebook, const std::vector<std::int64_t> &versions)
{
    writing([&](Writer &writer) {
        auto transaction = writer.connection.begin();
        for (const std::int64_t version : versions)
            writer.connection.run("DELETE FROM versions WHERE notebook = ?1 AND version = ?2 AND version < "
                                  "(SELECT version FROM notebooks WHERE id = ?1)",
                notebook, version);
        transaction.commit();
    });
}

StoreState SqliteStore::state()
{
    return reading([](Reader &reader) {
        BoundStatement row(reader.state);
        if (!row.step())
            return StoreState::open;
        return row.number(0) != 0 ? StoreState::moving : StoreState::moved;
    });
}

void SqliteStore::setState(StoreState state)
{
    writing([&](Writer &writer) {
        const auto run = [&](const std::string &sql) { writer.connection.run(sql.c_str()); };
        const std::string added = state == StoreState::moving ? "\"moving " : "\"sealed ";
        auto transaction = writer.connection.begin();
        for (const std::string table : {"settings", "notebooks", "versions"}) {
            for (const std::string change : {"INSERT", "UPDATE", "DELETE"}) {
                const std::string refused = table + ' ' + change + '"';
                for (const std::string present : {"\"moving ", "\"sealed "})
                    run("DROP TRIGGER IF EXISTS " + present + refused);
                if (state != StoreState::open)
                    run("CREATE TRIGGER " + added + refused + " BEFORE " + change + " ON " + table
                        + " BEGIN SELECT RAISE(ABORT, '" + std::string(refusalOf(state)) + "'); END");
            }
        }
        transaction.commit();
    });
}

class SqliteStore::Import final : public StoreImport {
public:
    explicit Import(SqliteStore &store)
        : m_store(store), m_lock(store.m_writer->mutex), m_transaction(store.m_writer->connection.begin())
    {
    }

    void addSetting(const std::string &key, const std::string &value) override
    {
        run(setSettingSql, key, value);
    }

    void addNotebook(const Notebook &notebook) override
    {
        const auto add = [&](const auto &selector, const auto &hash) {
            run("INSERT INTO notebooks (id, name, created_at, token_salt, token_selector, token_hash, "
                "version, quota_bytes, quota_versions) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
                notebook.id, notebook.name, notebook.createdAt, Blob{.bytes = notebook.tokenSalt}, selector,
                hash, notebook.version, storedLimit(notebook.quota.bytes),
                storedLimit(notebook.quota.versions));
        };
        if (const auto &hash = notebook.tokenHash)
            add(Blob{.bytes = selectorOf(*hash)}, Blob{.bytes = bytesOf(*hash)});
        else
            add(nullptr, nullptr);
    }

    void addVersion(std::int64_t notebook, const VersionRecord &record, std::string_view body) override
    {
        run("INSERT INTO versions (notebook, version, written_at, words, bytes, before_loss, body) "
            "VALUES (?, ?, ?, ?, ?, ?, ?)",
            notebook, record.version, record.writtenAt, record.words, record.bytes,
            std::int64_t{record.beforeLoss}, Blob{.bytes = body});
    }

    void commit() override
    {
        translated(m_store.m_file, [&] { m_transaction.commit(); });
    }

private:
    void run(const char *sql, const auto &...values)
    {
        translated(m_store.m_file, [&] { m_store.m_writer->connection.run(sql, values...); });
    }

    SqliteStore &m_store;
    std::unique_lock<std::mutex> m_lock;
    SQLite::Transaction m_transaction;
};

std::unique_ptr<StoreImport> SqliteStore::beginImport()
{
    return translated(m_file, [&] { return std::make_unique<Import>(*this); });
}

} // namespace nimbrelle::server
