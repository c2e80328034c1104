#include "server/PostgresStore.h"

#include "server/PostgresSchema.h"

namespace nimbrelle::server {

namespace {

namespace Sql {

#define NOTEBOOK_COLUMNS                                                                                     \
    "SELECT id, name, token_salt, token_hash, version, created_at, quota_bytes, quota_versions "             \
    "FROM nimbrelle.notebooks "

constexpr PostgresStatement setting{
    .name = "setting", .sql = "SELECT value FROM nimbrelle.settings WHERE key = $1"};
constexpr PostgresStatement setSetting{.name = "set_setting",
    .sql = "INSERT INTO nimbrelle.settings (key, value) VALUES ($1, $2) "
           "ON CONFLICT (key) DO UPDATE SET value = excluded.value"};
constexpr PostgresStatement notebooks{.name = "notebooks", .sql = NOTEBOOK_COLUMNS "ORDER BY id"};
constexpr PostgresStatement named{.name = "notebook_named", .sql = NOTEBOOK_COLUMNS "WHERE name = $1"};
constexpr PostgresStatement ofToken{
    .name = "notebook_of_token", .sql = NOTEBOOK_COLUMNS "WHERE token_selector = $1"};
constexpr PostgresStatement addNotebook{.name = "add_notebook",
    .sql = "INSERT INTO nimbrelle.notebooks (name, created_at, token_salt, token_selector, token_hash) "
           "VALUES ($1, $2, $3, $4, $5)"};
constexpr PostgresStatement setToken{.name = "set_token",
    .sql =
        "UPDATE nimbrelle.notebooks SET token_salt = $2, token_selector = $3, token_hash = $4 WHERE id = $1"};
constexpr PostgresStatement setQuota{.name = "set_quota",
    .sql = "UPDATE nimbrelle.notebooks SET quota_bytes = $2, quota_versions = $3 WHERE id = $1"};
constexpr PostgresStatement version{
    .name = "version", .sql = "SELECT version FROM nimbrelle.notebooks WHERE id = $1"};
constexpr PostgresStatement newest{.name = "newest",
    .sql = "SELECT version, body FROM nimbrelle.versions WHERE notebook = $1 ORDER BY version DESC LIMIT 1"};
constexpr PostgresStatement document{.name = "document",
    .sql = "SELECT version, body FROM nimbrelle.versions WHERE notebook = $1 AND version = $2"};
constexpr PostgresStatement history{.name = "history",
    .sql = "SELECT version, written_at, words, bytes, before_loss::int::bigint FROM nimbrelle.versions "
           "WHERE notebook = $1 ORDER BY version"};

// Compare-and-set in one statement. A writer that meets another waits for its end at the row that is raised,
// and then finds that the version is not the expected one any more: it raises nothing, so that nothing else
// happens either.
constexpr PostgresStatement append{.name = "append", .sql = R"(
    WITH raised AS (
        UPDATE nimbrelle.notebooks SET version = version + 1 WHERE id = $1 AND version = $2
        RETURNING id, version
    ), stored AS (
        INSERT INTO nimbrelle.versions (notebook, version, written_at, words, bytes, body)
        SELECT id, version, $3, $4, octet_length($5::bytea), $5 FROM raised
    ), marked AS (
        UPDATE nimbrelle.versions AS kept SET before_loss = true FROM raised
        WHERE kept.notebook = raised.id AND kept.version = $6
    ), dropped AS (
        DELETE FROM nimbrelle.versions AS kept USING raised
        WHERE kept.notebook = raised.id AND kept.version = ANY (string_to_array($7, ',')::bigint[])
    )
    SELECT version FROM raised)"};

constexpr PostgresStatement drop{.name = "drop", .sql = R"(
    DELETE FROM nimbrelle.versions AS kept USING nimbrelle.notebooks
    WHERE notebooks.id = $1 AND kept.notebook = $1 AND kept.version < notebooks.version
        AND kept.version = ANY (string_to_array($2, ',')::bigint[]))"};

// A notebook whose newest version is not kept, or whose document has another length than was noted.
constexpr PostgresStatement damage{.name = "damage", .sql = R"(
    SELECT notebooks.id FROM nimbrelle.notebooks
    LEFT JOIN nimbrelle.versions ON notebook = notebooks.id AND versions.version = notebooks.version
    WHERE notebooks.version > 0 AND (body IS NULL OR octet_length(body) <> bytes)
    LIMIT 1)"};
constexpr PostgresStatement flushes{.name = "flushes", .sql = "SELECT current_setting('fsync')"};

constexpr PostgresStatement settings{.name = "settings", .sql = "SELECT key, value FROM nimbrelle.settings"};
constexpr PostgresStatement importNotebook{.name = "import_notebook",
    .sql = "INSERT INTO nimbrelle.notebooks (id, name, created_at, token_salt, token_selector, token_hash, "
           "version, quota_bytes, quota_versions) VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9)"};
constexpr PostgresStatement importVersion{.name = "import_version",
    .sql = "INSERT INTO nimbrelle.versions (notebook, version, written_at, words, bytes, before_loss, body) "
           "VALUES ($1, $2, $3, $4, $5, $6::bigint <> 0, $7)"};
constexpr const char *continueIds =
    "SELECT setval(pg_get_serial_sequence('nimbrelle.notebooks', 'id'), max(id)) "
    "FROM nimbrelle.notebooks";

constexpr PostgresStatement state{.name = "state",
    .sql = "SELECT tgname::text FROM pg_trigger WHERE tgname IN ('moving', 'sealed') AND tgrelid = "
           "'nimbrelle.notebooks'::regclass"};

} // namespace Sql

std::vector<Notebook> notebooksIn(const PostgresResult &result)
{
    std::vector<Notebook> found;
    found.reserve(static_cast<std::size_t>(result.rows()));
    for (int row = 0; row < result.rows(); ++row)
        found.push_back({.id = result.number(row, 0),
            .name = result.bytes(row, 1),
            .tokenSalt = result.bytes(row, 2),
            .tokenHash = digestOf(result.bytes(row, 3)),
            .version = result.number(row, 4),
            .createdAt = result.time(row, 5),
            .quota = {.bytes = result.number(row, 6), .versions = result.number(row, 7)}});
    return found;
}

std::shared_ptr<const Document> documentIn(const PostgresResult &result)
{
    if (result.rows() == 0)
        return nullptr;
    return std::make_shared<const Document>(
        Document{.version = result.number(0, 0), .body = result.bytes(0, 1)});
}

std::string listText(const std::vector<std::int64_t> &numbers)
{
    std::string text;
    for (const std::int64_t number : numbers)
        text += (text.empty() ? "" : ",") + std::to_string(number);
    return text;
}

} // namespace

void PostgresStore::create(const std::string &url)
{
    PostgresConnection connection(url, PostgresPool::Settings{}.statementTimeout);
    PostgresSchema::create(connection);
}

PostgresStore::PostgresStore(PostgresPool::Settings settings)
    : m_url(settings.url), m_pool(std::move(settings), &PostgresSchema::require)
{
    m_pool.with([](PostgresConnection &) {}); // so that what is wrong shows at the start
}

PostgresResult PostgresStore::run(const PostgresStatement &statement, const auto &...values)
{
    return m_pool.with([&](PostgresConnection &connection) { return connection.run(statement, values...); });
}

void PostgresStore::check()
{
    if (const StoreState current = state(); current != StoreState::open)
        throw StoreFailure(StoreFailure::Kind::other, std::string(refusalOf(current)));
    if (run(Sql::flushes).bytes(0, 0) != "on")
        throw StoreFailure(StoreFailure::Kind::other,
            "the database was told not to wait for its disk, and would lose what was acknowledged; set fsync "
            "= "
            "on in its postgresql.conf");
    const auto damaged = run(Sql::damage);
    if (damaged.rows() > 0)
        throw StoreFailure(StoreFailure::Kind::damaged,
            "the database has lost the newest version of the notebook with id "
                + std::to_string(damaged.number(0, 0)) + ". Put it back from a backup");
}

std::optional<std::string> PostgresStore::setting(std::string_view key)
{
    const auto result = run(Sql::setting, std::string(key));
    return result.rows() > 0 ? std::optional(result.bytes(0, 0)) : std::nullopt;
}

void PostgresStore::setSetting(std::string_view key, std::string_view value)
{
    run(Sql::setSetting, std::string(key), std::string(value));
}

std::map<std::string, std::string> PostgresStore::settings()
{
    const auto result = run(Sql::settings);
    std::map<std::string, std::string> found;
    for (int row = 0; row < result.rows(); ++row)
        found.emplace(result.bytes(row, 0), result.bytes(row, 1));
    return found;
}

std::vector<Notebook> PostgresStore::notebooks()
{
    return notebooksIn(run(Sql::notebooks));
}

std::optional<Notebook> PostgresStore::notebookNamed(std::string_view name)
{
    const auto found = notebooksIn(run(Sql::named, std::string(name)));
    return found.empty() ? std::nullopt : std::optional(found.front());
}

std::optional<Notebook> PostgresStore::notebookOfToken(const Digest &tokenHash)
{
    for (Notebook &notebook : notebooksIn(run(Sql::ofToken, PostgresBytes{.bytes = selectorOf(tokenHash)}))) {
        if (notebook.tokenHash && equalInConstantTime(*notebook.tokenHash, tokenHash))
            return std::move(notebook);
    }
    return std::nullopt;
}

void PostgresStore::addNotebook(
    std::string_view name, std::string_view salt, const Digest &tokenHash, std::chrono::sys_seconds now)
{
    run(Sql::addNotebook, std::string(name), now, PostgresBytes{.bytes = salt},
        PostgresBytes{.bytes = selectorOf(tokenHash)}, PostgresBytes{.bytes = bytesOf(tokenHash)});
}

void PostgresStore::setToken(std::int64_t notebook, std::string_view salt, std::optional<Digest> tokenHash)
{
    if (tokenHash)
        run(Sql::setToken, notebook, PostgresBytes{.bytes = salt},
            PostgresBytes{.bytes = selectorOf(*tokenHash)}, PostgresBytes{.bytes = bytesOf(*tokenHash)});
    else
        run(Sql::setToken, notebook, PostgresBytes{.bytes = salt}, nullptr, nullptr);
}

void PostgresStore::setQuota(std::int64_t notebook, const Quota &quota)
{
    run(Sql::setQuota, notebook, quota.bytes, quota.versions);
}

std::optional<std::int64_t> PostgresStore::version(std::int64_t notebook)
{
    const auto result = run(Sql::version, notebook);
    return result.rows() > 0 ? std::optional(result.number(0, 0)) : std::nullopt;
}

std::shared_ptr<const Document> PostgresStore::newestDocument(std::int64_t notebook)
{
    return documentIn(run(Sql::newest, notebook));
}

std::shared_ptr<const Document> PostgresStore::document(std::int64_t notebook, std::int64_t version)
{
    return documentIn(run(Sql::document, notebook, version));
}

std::vector<VersionRecord> PostgresStore::history(std::int64_t notebook)
{
    const auto result = run(Sql::history, notebook);
    std::vector<VersionRecord> found;
    found.reserve(static_cast<std::size_t>(result.rows()));
    for (int row = 0; row < result.rows(); ++row)
        found.push_back({.version = result.number(row, 0),
            .writtenAt = result.time(row, 1),
            .words = result.number(row, 2),
            .bytes = result.number(row, 3),
            .beforeLoss = result.number(row, 4) != 0});
    return found;
}

bool PostgresStore::append(
    std::int64_t notebook, std::int64_t expected, const NewDocument &document, const HistoryChange &change)
{
    const auto result = run(Sql::append, notebook, expected, document.writtenAt, document.words,
        PostgresBytes{.bytes = document.body}, change.beforeLoss.value_or(0), listText(change.dropped));
    return result.rows() > 0;
}

void PostgresStore::drop(std::int64_t notebook, const std::vector<std::int64_t> &versions)
{
    run(Sql::drop, notebook, listText(versions));
}

StoreState PostgresStore::state()
{
    const auto result = run(Sql::state);
    if (result.rows() == 0)
        return StoreState::open;
    return result.bytes(0, 0) == "moving" ? StoreState::moving : StoreState::moved;
}

// To make a trigger waits for the writes that are under way, and every later one meets it.
void PostgresStore::setState(StoreState state)
{
    const std::string added = state == StoreState::moving ? "moving" : "sealed";
    std::string sql = "CREATE OR REPLACE FUNCTION nimbrelle.refuse() RETURNS trigger LANGUAGE plpgsql AS "
                      "$$ BEGIN RAISE EXCEPTION '"
        + std::string(refusalOf(state)) + "'; END $$;";
    for (const std::string table : {"nimbrelle.settings", "nimbrelle.notebooks", "nimbrelle.versions"}) {
        for (const std::string present : {"moving", "sealed"})
            sql += "DROP TRIGGER IF EXISTS " + present + " ON " + table + ';';
        if (state != StoreState::open)
            sql += "CREATE TRIGGER " + added + " BEFORE INSERT OR UPDATE OR DELETE ON " + table
                + " EXECUTE FUNCTION nimbrelle.refuse();";
    }
    m_pool.with([&](PostgresConnection &connection) {
        PostgresTransaction transaction(connection);
        connection.run(sql);
        transaction.commit();
    });
}

// On a connection of its own, for the time limit of a request's statements is too short.
class PostgresStore::Import final : public StoreImport {
public:
    explicit Import(const std::string &url)
        : m_connection(url, std::chrono::milliseconds(0)), m_transaction(m_connection)
    {
    }

    void addSetting(const std::string &key, const std::string &value) override
    {
        m_connection.run(Sql::setSetting, key, value);
    }

    void addNotebook(const Notebook &notebook) override
    {
        const auto add = [&](const auto &selector, const auto &hash) {
            m_connection.run(Sql::importNotebook, notebook.id, notebook.name, notebook.createdAt,
                PostgresBytes{.bytes = notebook.tokenSalt}, selector, hash, notebook.version,
                notebook.quota.bytes, notebook.quota.versions);
        };
        if (const auto &hash = notebook.tokenHash)
            add(PostgresBytes{.bytes = selectorOf(*hash)}, PostgresBytes{.bytes = bytesOf(*hash)});
        else
            add(nullptr, nullptr);
    }

    void addVersion(std::int64_t notebook, const VersionRecord &record, std::string_view body) override
    {
        m_connection.run(Sql::importVersion, notebook, record.version, record.writtenAt, record.words,
            record.bytes, std::int64_t{record.beforeLoss}, PostgresBytes{.bytes = body});
    }

    void commit() override
    {
        m_connection.run(Sql::continueIds);
        m_transaction.commit();
    }

private:
    PostgresConnection m_connection;
    PostgresTransaction m_transaction;
};

std::unique_ptr<StoreImport> PostgresStore::beginImport()
{
    return std::make_unique<Import>(m_url);
}

} // namespace nimbrelle::server
