#include "server/PostgresStore.h"

#include "server/PostgresSchema.h"
#include "server/support/PostgresServer.h"

#include <gmock/gmock.h>
#include <latch>
#include <thread>

using namespace nimbrelle::server;
using namespace std::chrono_literals;
using testing::HasSubstr;

namespace {

// What this does to a store; nothing when all is well.
std::string failure(StoreFailure::Kind kind, const std::function<void()> &work)
{
    try {
        work();
        return "";
    } catch (const StoreFailure &caught) {
        EXPECT_EQ(caught.kind(), kind) << caught.what();
        return caught.what();
    }
}

class PostgresStoreTest : public testing::Test {
protected:
    void run(const std::string &sql) const { PostgresConnection(url, 1min).run(sql); }
    std::int64_t number(const char *sql) const
    {
        return PostgresConnection(url, 1min)
            .run(PostgresStatement{.name = "number", .sql = sql})
            .number(0, 0);
    }
    std::unique_ptr<PostgresStore> open(PostgresPool::Settings settings = {}) const
    {
        settings.url = url;
        return std::make_unique<PostgresStore>(settings);
    }

    PostgresServer &postgres = PostgresServer::shared();
    std::string url = postgres.newDatabase();
};

} // namespace

TEST_F(PostgresStoreTest, TheTablesAreMadeWholeOrNotAtAllAndOnce)
{
    EXPECT_THAT(failure(StoreFailure::Kind::other, [&] { open(); }), HasSubstr("nimbrelle-server init"));
    run("CREATE SCHEMA nimbrelle; CREATE TABLE nimbrelle.versions (other text)");
    EXPECT_THROW(PostgresStore::create(url), StoreFailure);
    EXPECT_EQ(number("SELECT count(*) FROM pg_tables WHERE schemaname = 'nimbrelle'"), 1);
    run("DROP SCHEMA nimbrelle CASCADE");

    std::latch start(6);
    std::vector<std::jthread> makers(6);
    for (std::jthread &maker : makers) {
        maker = std::jthread([&] {
            start.arrive_and_wait();
            PostgresStore::create(url);
        });
    }
    makers.clear();
    open()->addNotebook("first", "salt", sha256("one"), {});
    PostgresStore::create(url);
    EXPECT_TRUE(open()->notebookNamed("first"));
}

TEST_F(PostgresStoreTest, TablesOfANewerVersionAreLeftAlone)
{
    PostgresStore::create(url);
    run("UPDATE nimbrelle.schema_version SET version = version + 1");
    EXPECT_THAT(failure(StoreFailure::Kind::other, [&] { open(); }), HasSubstr("newer nimbrelle-server"));
    EXPECT_THROW(PostgresStore::create(url), StoreFailure);
}

TEST_F(PostgresStoreTest, AnEarlierVersionsTablesAreTakenOver)
{
    PostgresStore::create(url);
    open()->addNotebook("first", "salt", sha256("one"), {});
    run("ALTER TABLE nimbrelle.notebooks DROP COLUMN quota_bytes, DROP COLUMN quota_versions;"
        "UPDATE nimbrelle.schema_version SET version = 1");
    const auto store = open();
    store->setQuota(1, {.bytes = 7, .versions = 8});
    EXPECT_EQ(store->notebookOfToken(sha256("one"))->quota, (OwnQuota{.bytes = 7, .versions = 8}));
}

TEST_F(PostgresStoreTest, WritesWaitForTheDiskWhateverTheDatabaseWasTold)
{
    PostgresStore::create(url);
    run("DO $$ BEGIN EXECUTE 'ALTER DATABASE ' || current_database() || ' SET synchronous_commit = off'; END "
        "$$");
    EXPECT_EQ(number("SELECT (current_setting('synchronous_commit') = 'on')::int::bigint"), 1);
}

TEST_F(PostgresStoreTest, ALostDocumentIsFoundByTheCheck)
{
    PostgresStore::create(url);
    const auto store = open();
    store->addNotebook("first", "salt", sha256("one"), {});
    ASSERT_TRUE(store->append(1, 0, {.body = "{}"}, {}));
    EXPECT_EQ(failure(StoreFailure::Kind::damaged, [&] { store->check(); }), "");
    run("UPDATE nimbrelle.versions SET body = '{'");
    EXPECT_THAT(failure(StoreFailure::Kind::damaged, [&] { store->check(); }), HasSubstr("from a backup"));
    run("DELETE FROM nimbrelle.versions");
    EXPECT_THAT(failure(StoreFailure::Kind::damaged, [&] { store->check(); }), HasSubstr("from a backup"));
}

TEST_F(PostgresStoreTest, AStatementThatTakesTooLongIsGivenUp)
{
    PostgresStore::create(url);
    const auto store = open({.statementTimeout = 50ms});
    store->addNotebook("first", "salt", sha256("one"), {});
    {
        PostgresConnection other(url, 1min);
        const PostgresTransaction transaction(other);
        other.run("SELECT * FROM nimbrelle.notebooks FOR UPDATE");
        EXPECT_THAT(
            failure(StoreFailure::Kind::unavailable, [&] { store->append(1, 0, {.body = "{}"}, {}); }),
            HasSubstr("statement timeout"));
    }
    EXPECT_TRUE(store->append(1, 0, {.body = "{}"}, {}));

    // A database that is stuck can't keep its own time.
    postgres.freeze(true);
    EXPECT_THAT(
        failure(StoreFailure::Kind::unavailable, [&] { store->version(1); }), HasSubstr("not answer"));
    postgres.freeze(false);
    EXPECT_EQ(store->version(1), 1);
}

TEST_F(PostgresStoreTest, ADatabaseThatIsAwayIsTriedAgainAfterAWhile)
{
    PostgresStore::create(url);
    PostgresPool::Clock::time_point now{1h};
    const auto store = open({.retryAfter = 1s, .now = [&] { return now; }});
    store->addNotebook("first", "salt", sha256("one"), {});
    postgres.kill();
    EXPECT_THAT(failure(StoreFailure::Kind::unavailable, [&] { store->version(1); }),
        HasSubstr("Connection refused"));
    postgres.start();
    EXPECT_THAT(failure(StoreFailure::Kind::unavailable, [&] { store->version(1); }), HasSubstr("refused"));
    now += 1s;
    EXPECT_EQ(store->version(1), 0);

    // The connection that waited meanwhile is found to be lost before it is used.
    postgres.kill();
    postgres.start();
    EXPECT_TRUE(store->append(1, 0, {.body = "{}"}, {}));
}

TEST_F(PostgresStoreTest, NoMoreConnectionsAreMadeThanAllowed)
{
    PostgresStore::create(url);
    PostgresPool pool({.url = url, .connections = 1, .waitTimeout = 0ms}, &PostgresSchema::require);
    pool.with([&](PostgresConnection &) {
        EXPECT_THAT(failure(StoreFailure::Kind::unavailable, [&] { pool.with([](PostgresConnection &) {}); }),
            HasSubstr("in use"));
    });
    EXPECT_EQ(failure(StoreFailure::Kind::unavailable, [&] { pool.with([](PostgresConnection &) {}); }), "");
}

TEST_F(PostgresStoreTest, AConnectionThatCarriedMuchIsNotKept)
{
    PostgresStore::create(url);
    int connections = 0;
    PostgresPool pool({.url = url}, [&](PostgresConnection &) { ++connections; });
    constexpr PostgresStatement length{.name = "length", .sql = "SELECT octet_length($1::bytea)::bigint"};
    constexpr PostgresStatement filled{.name = "filled", .sql = "SELECT repeat('x', $1::bigint::int)"};
    const auto send = [&](std::size_t bytes) {
        const std::string body(bytes, 'x');
        pool.with(
            [&](PostgresConnection &connection) { connection.run(length, PostgresBytes{.bytes = body}); });
    };
    const auto receive = [&](std::int64_t bytes) {
        pool.with([&](PostgresConnection &connection) { connection.run(filled, bytes); });
    };
    for (int round = 0; round < 2; ++round) {
        send(1 << 20);
        receive(1 << 20);
    }
    EXPECT_EQ(connections, 1);
    send(6 << 20);
    receive(6 << 20);
    EXPECT_EQ(connections, 2);
    send(1);
    EXPECT_EQ(connections, 3);
}

TEST_F(PostgresStoreTest, OneAttemptAtATimeIsMadeToReachADatabaseThatIsAway)
{
    PostgresStore::create(url);
    PostgresPool::Clock::time_point now{1h};
    std::string nested;
    int connections = 0;
    PostgresPool *pool = nullptr;
    PostgresPool made({.url = url, .retryAfter = 1s, .now = [&] { return now; }}, [&](PostgresConnection &) {
        ++connections;
        nested = failure(StoreFailure::Kind::unavailable, [&] { pool->with([](PostgresConnection &) {}); });
    });
    pool = &made;
    postgres.kill();
    EXPECT_NE(failure(StoreFailure::Kind::unavailable, [&] { pool->with([](PostgresConnection &) {}); }), "");
    postgres.start();
    now += 1s;
    pool->with([](PostgresConnection &) {});
    EXPECT_THAT(nested, HasSubstr("refused")); // who came while the attempt was under way
    EXPECT_EQ(connections, 1);
}
