#include "server/PostgresStore.h"

#include "server/PostgresSchema.h"
#include "server/PostgresStatements.h"

namespace nimbrelle::server {

namespace {

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
            .quota = {.bytes = limitIn(result.number(row, 6)), .versions = limitIn(result.number(row, 7))}});
    return found;
}

std::vector<VersionRecord> recordsIn(const PostgresResult &result)
{
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

std::shared_ptr<const Document> documentIn(const PostgresResult &result)
{
    if (result.rows() == 0)
        return nullptr;
    return std::make_shared<const Document>(
        Document{.version = result.number(0, 0), .writtenAt = result.time(0, 2), .body = result.bytes(0, 1)});
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

void PostgresStore::setQuota(std::int64_t notebook, const OwnQuota &quota)
{
    run(Sql::setQuota, notebook, storedLimit(quota.bytes), storedLimit(quota.versions));
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
    return recordsIn(run(Sql::history, notebook));
}

std::optional<VersionRecord> PostgresStore::newestRecord(std::int64_t notebook)
{
    const auto found = recordsIn(run(Sql::newestRecord, notebook));
    return found.empty() ? std::nullopt : std::optional(found.front());
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
                storedLimit(notebook.quota.bytes), storedLimit(notebook.quota.versions));
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
