#include "server/MoveStore.h"
#include "server/PostgresConnection.h"
#include "server/StoreFactory.h"
#include "server/VersionedWrite.h"
#include "server/support/PostgresServer.h"

#include <array>
#include <gtest/gtest.h>
#include <latch>
#include <thread>

using namespace nimbrelle::server;
using namespace std::chrono;

namespace {

constexpr sys_seconds noon = sys_days(2026y / March / 1) + 12h;

struct StoreMaker {
    const char *name;
    /// A place where no store is yet.
    StoreLocation (*place)(const std::filesystem::path &directory);
};

const StoreMaker storeMakers[] = {
    {.name = "Sqlite", .place = [](const auto &directory) { return StoreLocation(directory.string()); }},
    {.name = "Postgres",
        .place = [](const auto &) { return StoreLocation(PostgresServer::shared().newDatabase()); }},
};

// What every store owes to the server.
class StoreSuite : public testing::TestWithParam<StoreMaker> {
protected:
    StoreSuite()
    {
        store->addNotebook("first", "salt", sha256("one"), noon);
        id = store->notebookNamed("first")->id;
    }

    // As another process has it.
    std::unique_ptr<Store> open() const
    {
        createStore(location);
        return openStore(location);
    }
    std::optional<std::int64_t> write(std::int64_t over, int words, sys_seconds at = noon)
    {
        const std::string body = documentOf(words);
        return writeVersion(*store, id, {.body = body, .words = words, .writtenAt = at},
            [&](std::int64_t current) { return current == over; });
    }

    TemporaryDirectory directory;
    StoreLocation location = GetParam().place(directory.path());
    std::unique_ptr<Store> store = open();
    std::int64_t id = 0;
};

INSTANTIATE_TEST_SUITE_P(, StoreSuite, testing::ValuesIn(storeMakers),
    [](const auto &maker) { return std::string(maker.param.name); });

} // namespace

TEST(StoreLocation, IsShownWithoutAPassword)
{
    const auto shown = [](const std::string &rest) {
        return StoreLocation("postgresql://" + rest).shown().substr(std::string("postgresql://").size());
    };
    EXPECT_EQ(shown("/base?host=/run"), "/base");
    EXPECT_EQ(shown("host:5432/base?password=se@cret"), "...");
    EXPECT_EQ(shown("host:5432/base?password=secret"), "host:5432/base");
    for (const char *password : {"secret", "se?cret", "se@cret", "se:cr?e@t", "?", "%2F"})
        EXPECT_EQ(shown("user:" + std::string(password) + "@host/base?user=a@b"), "host/base") << password;
    EXPECT_EQ(shown("user:se/cr?et@host/base"), "...");
}

TEST_P(StoreSuite, ATokenOpensItsOwnNotebookOnly)
{
    store->addNotebook("second", "pepper", sha256("two"), noon);
    EXPECT_THROW(store->addNotebook("second", "other", sha256("other"), noon), StoreFailure);
    const auto second = store->notebookOfToken(sha256("two"));
    ASSERT_TRUE(second);
    EXPECT_EQ(second->name, "second");
    EXPECT_EQ(second->tokenSalt, "pepper");
    EXPECT_EQ(second->createdAt, noon);
    auto nearly = sha256("two");
    nearly.back() ^= 1; // may be found by a part of it, and is then refused
    EXPECT_FALSE(store->notebookOfToken(nearly));

    store->setToken(id, "salt", std::nullopt);
    EXPECT_FALSE(store->notebookOfToken(sha256("one")));
    EXPECT_EQ(store->notebooks().size(), 2U);
}

TEST_P(StoreSuite, AVersionIsWrittenOverOnce)
{
    EXPECT_EQ(store->newestDocument(id), nullptr);
    EXPECT_FALSE(store->newestRecord(id));
    EXPECT_EQ(store->version(id), 0);
    EXPECT_EQ(write(0, 3), 1);
    EXPECT_FALSE(store->append(id, 0, {.body = "{}"}, {}));
    EXPECT_FALSE(store->append(id, 2, {.body = "{}"}, {}));
    EXPECT_EQ(store->newestDocument(id)->body, documentOf(3));
    EXPECT_EQ(write(1, 4), 2);
    EXPECT_EQ(store->newestDocument(id)->version, 2);
    EXPECT_EQ(store->document(id, 1)->body, documentOf(3));
    EXPECT_EQ(store->notebookNamed("first")->version, 2);
    store->check();
    const std::string zeros("{\0}", 3);
    EXPECT_TRUE(store->append(id, 2, {.body = zeros}, {}));
    EXPECT_EQ(store->newestDocument(id)->body, zeros);

    EXPECT_FALSE(store->version(id + 1));
    EXPECT_FALSE(store->append(id + 1, 0, {.body = "{}"}, {}));
}

TEST_P(StoreSuite, WhatStoodBeforeALossOutlivesAllElse)
{
    write(0, 30);
    for (int version = 1; version < 40; ++version)
        write(version, 20, noon + minutes(version));
    const auto records = store->history(id);
    EXPECT_EQ(records.size(), 21U);
    EXPECT_EQ(records.front().version, 1);
    EXPECT_TRUE(records.front().beforeLoss);
    EXPECT_EQ(records.back().writtenAt, noon + 39min);
    EXPECT_EQ(records.back().bytes, std::ssize(documentOf(20)));
    EXPECT_EQ(store->newestRecord(id), records.back());
    EXPECT_EQ(store->newestDocument(id)->writtenAt, records.back().writtenAt);
    EXPECT_EQ(store->document(id, 1)->writtenAt, noon);
}

TEST_P(StoreSuite, AQuotaDropsWhatMayGoAndRefusesTheRest)
{
    setDefaultQuota(*store, {.bytes = 2000, .versions = 9});
    const auto quotaWith = [&](const OwnQuota &own) {
        store->setQuota(id, own);
        return quotaOf(*store, *store->notebookNamed("first"));
    };
    EXPECT_EQ(quotaWith({}), (Quota{.bytes = 2000, .versions = 9}));
    EXPECT_EQ(quotaWith({.bytes = 0, .versions = 0}), Quota{}); // no limit at all
    EXPECT_EQ(quotaWith({.bytes = 0}), (Quota{.versions = 9}));
    const Quota quota = quotaWith({.versions = 3});
    EXPECT_EQ(quota, (Quota{.bytes = 2000, .versions = 3}));
    const auto writeUnderQuota = [&](int words) {
        const std::string body = documentOf(words);
        return writeVersion(
            *store, id, {.body = body, .words = words, .writtenAt = noon}, [](std::int64_t) { return true; },
            quota);
    };
    const auto kept = [&] {
        std::vector<std::int64_t> versions;
        for (const VersionRecord &record : store->history(id))
            versions.push_back(record.version);
        return versions;
    };
    for (const int words : {9, 5, 5, 5, 5})
        writeUnderQuota(words);
    EXPECT_EQ(kept(), (std::vector<std::int64_t>{1, 4, 5})); // 1 stood before a loss
    writeUnderQuota(1);
    EXPECT_EQ(kept(), (std::vector<std::int64_t>{1, 5, 6}));
    EXPECT_THROW(writeUnderQuota(0), QuotaExceeded);
    EXPECT_THROW(writeUnderQuota(200), QuotaExceeded); // which alone is longer
    EXPECT_EQ(store->version(id), 6);
    EXPECT_TRUE(restoreVersion(*store, id, 1, noon));
}

TEST_P(StoreSuite, PruningSparesTheNewestAndWhatItWasNotAskedFor)
{
    for (const int words : {9, 9, 1, 1, 1})
        write(store->version(id).value(), words);
    const auto pruned = [&](const Pruning &pruning) {
        return HistoryPolicy::versionsToPrune(store->history(id), pruning);
    };
    using Versions = std::vector<std::int64_t>;
    EXPECT_EQ(pruned({.keptNewest = 2, .before = noon}), Versions{});
    EXPECT_EQ(pruned({.keptNewest = 2, .before = noon + 1s}), (Versions{1, 3}));
    EXPECT_EQ(pruned({.keptNewest = 0, .before = noon + 1s, .alsoBeforeLoss = true}), (Versions{1, 2, 3, 4}));
    store->addNotebook("other", "pepper", sha256("two"), noon);
    const auto other = store->notebookNamed("other")->id;
    ASSERT_TRUE(store->append(other, 0, {.body = "{}"}, {}));
    ASSERT_TRUE(store->append(other, 1, {.body = "{}"}, {}));
    store->drop(id, {1, 2, 5, 17});
    EXPECT_EQ(store->history(other).size(), 2U);
    EXPECT_EQ(pruned({.keptNewest = 1, .before = noon + 1s, .alsoBeforeLoss = true}), (Versions{3, 4}));
    EXPECT_EQ(store->newestDocument(id)->version, 5);
}

TEST_P(StoreSuite, RestoringMakesANewHigherVersion)
{
    write(0, 30);
    write(1, 5);
    EXPECT_EQ(restoreVersion(*store, id, 1, noon + 1h), 3);
    EXPECT_EQ(store->newestDocument(id)->body, documentOf(30));
    EXPECT_EQ(store->history(id).size(), 3U);
    EXPECT_EQ(store->history(id).back().words, 30);
    EXPECT_FALSE(restoreVersion(*store, id, 9, noon));
}

TEST_P(StoreSuite, AWriterThatLostARaceLooksAgain)
{
    write(0, 30);
    const auto letAnotherWrite = [&](std::int64_t current) { return current > 1 || write(1, 5).has_value(); };
    EXPECT_EQ(writeVersion(*store, id, {.body = "{}", .words = 5}, letAnotherWrite), 3);
    const auto records = store->history(id);
    EXPECT_TRUE(records[0].beforeLoss);
    EXPECT_FALSE(records[1].beforeLoss);
}

TEST_P(StoreSuite, OneOfManyWritersWinsEachVersion)
{
    std::latch start(4);
    std::array<std::atomic<int>, 10> wins{};
    std::vector<std::jthread> writers(4);
    for (std::jthread &writer : writers) {
        writer = std::jthread([&] {
            const auto own = open();
            start.arrive_and_wait();
            for (std::size_t version = 0; version < wins.size(); ++version)
                wins[version] +=
                    own->append(id, static_cast<std::int64_t>(version), {.body = "{}"}, {}) ? 1 : 0;
        });
    }
    writers.clear();
    for (const auto &each : wins)
        EXPECT_EQ(each, 1);
}

TEST_P(StoreSuite, AnotherProcessSeesAndIsSeenAtOnce)
{
    const auto other = open();
    write(0, 3);
    EXPECT_EQ(other->newestDocument(id)->version, 1);
    other->setToken(id, "sugar", sha256("new"));
    EXPECT_TRUE(store->notebookOfToken(sha256("new")));
    EXPECT_FALSE(store->notebookOfToken(sha256("one")));
    EXPECT_FALSE(store->setting("url"));
    other->setSetting("url", "https://a");
    other->setSetting("url", "https://b");
    EXPECT_EQ(store->setting("url"), "https://b");
}

TEST_P(StoreSuite, MovesWithAllThatItHoldsAndTakesNoMoreChanges)
{
    write(0, 30);
    write(1, 5);
    store->setSetting("url", "https://a");
    store->setQuota(id, {.bytes = 900, .versions = 0});
    store->addNotebook("revoked", std::string("\0salt", 5), sha256("two"), noon + 1h);
    store->setToken(store->notebookNamed("revoked")->id, "pepper", std::nullopt);
    for (const StoreMaker &maker : storeMakers) {
        const TemporaryDirectory other;
        const StoreLocation place = maker.place(other.path());
        createStore(place);
        const auto target = openStore(place);
        target->setSetting("url", "https://from-an-interrupted-init");
        EXPECT_EQ(moveStore(*store, *target).versions, 2U);
        EXPECT_EQ(moveStore(*store, *target).notebooks, 2U); // as after an interruption
        EXPECT_EQ(target->notebooks(), store->notebooks());
        EXPECT_EQ(target->notebookOfToken(sha256("one"))->id, id);
        EXPECT_EQ(target->newestDocument(id)->body, documentOf(5));
        EXPECT_TRUE(target->history(id).front().beforeLoss);
        EXPECT_THROW(write(2, 6), StoreFailure);
        EXPECT_THROW(store->setQuota(id, {}), StoreFailure);
        EXPECT_THROW(store->drop(id, {1}), StoreFailure);
        EXPECT_THROW(store->addNotebook("third", "salt", sha256("three"), noon), StoreFailure);
        EXPECT_THROW(store->check(), StoreFailure);

        target->check();
        EXPECT_TRUE(target->append(id, 2, {.body = "{}"}, {}));
        target->addNotebook("third", "salt", sha256("three"), noon);
        EXPECT_THROW(moveStore(*store, *target), Failure);
        EXPECT_THROW(write(2, 6), StoreFailure); // for the other one goes on already
    }
}

TEST_P(StoreSuite, GoesOnWhenItCannotBeMoved)
{
    write(0, 3);
    const TemporaryDirectory other;
    const StoreLocation place = GetParam().place(other.path());
    createStore(place);
    const auto target = openStore(place);
    target->addNotebook("another", "salt", sha256("two"), noon);
    EXPECT_THROW(moveStore(*store, *target), Failure);
    EXPECT_EQ(write(1, 4), 2);

    store->setState(StoreState::moving); // as an interruption leaves it
    EXPECT_THROW(write(2, 5), StoreFailure);
    EXPECT_THROW(store->check(), StoreFailure);
    EXPECT_THROW(moveStore(*store, *target), Failure);
    EXPECT_EQ(write(2, 5), 3);
}

TEST_P(StoreSuite, NeverEndsWithoutAStoreThatTakesChanges)
{
    write(0, 3);
    EXPECT_THROW(moveStore(*store, *open()), Failure);
    EXPECT_EQ(write(1, 4), 2);

    const TemporaryDirectory other;
    const StoreLocation place = GetParam().place(other.path());
    createStore(place);
    const auto target = openStore(place);
    moveStore(*store, *target);
    EXPECT_THROW(moveStore(*target, *store), Failure);
    EXPECT_TRUE(target->append(id, 2, {.body = "{}"}, {}));
    EXPECT_THROW(moveStore(*store, *open()), Failure);
    EXPECT_THROW(write(2, 5), StoreFailure);
    store->setState(StoreState::open);
    EXPECT_EQ(write(2, 5), 3);
    store->check();
}

TEST_P(StoreSuite, IsOnlyTakenForMovedOnceAllIsCompared)
{
    write(0, 3);
    const std::string url = PostgresServer::shared().newDatabase();
    createStore(StoreLocation(url));
    const auto target = openStore(StoreLocation(url));
    PostgresConnection other(url, 1min);
    auto copyIsHeldUp = std::make_unique<PostgresTransaction>(other);
    other.run("LOCK TABLE nimbrelle.versions IN SHARE MODE");
    std::jthread mover([&] { moveStore(*store, *target); });
    EXPECT_TRUE(eventually([&] { return store->state() == StoreState::moving; }));
    EXPECT_THROW(write(1, 4), StoreFailure);
    EXPECT_EQ(store->state(), StoreState::moving);
    copyIsHeldUp.reset();
    mover.join();
    EXPECT_EQ(store->state(), StoreState::moved);
}
