#include "server/VersionedWrite.h"
#include "server/support/Stage.h"
#include "server/support/StoreMakers.h"

#include <gmock/gmock.h>
#include <latch>
#include <thread>

using namespace nimbrelle::server;
using namespace std::chrono;
using testing::ElementsAre;

namespace {

constexpr sys_seconds noon = sys_days(2026y / March / 1) + 12h;

// What every store owes to the server.
class StoreSuite : public testing::TestWithParam<StoreMaker> {
protected:
    StoreSuite()
    {
        store->addNotebook("first", "salt", sha256("one"), noon);
        id = store->notebookNamed("first")->id;
    }

    std::optional<std::int64_t> write(std::int64_t over, int words, sys_seconds at = noon)
    {
        const std::string body = documentOf(words);
        return writeVersion(*store, id, {.body = body, .words = words, .writtenAt = at},
            [&](std::int64_t current) { return current == over; });
    }
    std::vector<std::int64_t> kept()
    {
        std::vector<std::int64_t> found;
        for (const auto &record : store->history(id))
            found.push_back(record.version);
        return found;
    }

    std::unique_ptr<StorePlace> place = GetParam().make();
    std::unique_ptr<Store> store = place->open();
    std::int64_t id = 0;
};

INSTANTIATE_TEST_SUITE_P(, StoreSuite, testing::ValuesIn(storeMakers()), testing::PrintToStringParamName());

} // namespace

TEST_P(StoreSuite, KeepsSettings)
{
    EXPECT_FALSE(store->setting("url"));
    store->setSetting("url", "https://a");
    store->setSetting("url", "https://b");
    EXPECT_EQ(place->open()->setting("url"), "https://b");
}

TEST_P(StoreSuite, ATokenOpensItsOwnNotebookOnly)
{
    store->addNotebook("second", "pepper", sha256("two"), noon);
    EXPECT_THROW(store->addNotebook("second", "other", sha256("other"), noon), StoreFailure);
    const auto second = store->notebookOfToken(sha256("two"));
    ASSERT_TRUE(second);
    EXPECT_EQ(second->name, "second");
    EXPECT_EQ(second->tokenSalt, "pepper");
    EXPECT_EQ(second->tokenHash, sha256("two"));
    EXPECT_EQ(second->createdAt, noon);
    auto nearly = sha256("two");
    nearly.back() ^= 1; // may be found by a part of it, and is then refused
    EXPECT_FALSE(store->notebookOfToken(nearly));

    store->setToken(id, "salt", std::nullopt);
    EXPECT_FALSE(store->notebookOfToken(sha256("one")));
    store->setToken(id, "sugar", sha256("four"));
    EXPECT_EQ(store->notebookOfToken(sha256("four"))->name, "first");
    EXPECT_EQ(store->notebooks().size(), 2U);
}

TEST_P(StoreSuite, AVersionIsWrittenOverOnce)
{
    EXPECT_EQ(store->newestDocument(id), nullptr);
    EXPECT_EQ(store->version(id), 0);
    EXPECT_EQ(write(0, 3), 1);
    EXPECT_FALSE(store->append(id, 0, {.body = "{}"}, {}));
    EXPECT_FALSE(store->append(id, 2, {.body = "{}"}, {}));
    EXPECT_EQ(store->newestDocument(id)->body, documentOf(3));
    EXPECT_EQ(write(1, 4), 2);
    EXPECT_EQ(store->newestDocument(id)->version, 2);
    EXPECT_EQ(store->document(id, 1)->body, documentOf(3));
    EXPECT_EQ(store->notebookNamed("first")->version, 2);
    EXPECT_EQ(store->version(id), 2);
    store->check();
}

TEST_P(StoreSuite, WithoutANotebookNothingIsWritten)
{
    const std::int64_t unknown = id + 1;
    EXPECT_FALSE(store->version(unknown));
    EXPECT_FALSE(store->append(unknown, 0, {.body = "{}"}, {}));
    EXPECT_FALSE(writeVersion(*store, unknown, {.body = "{}"}, [](std::int64_t) { return true; }));
}

TEST_P(StoreSuite, WhatStoodBeforeALossOutlivesAllElse)
{
    write(0, 30);
    write(1, 20);
    for (int version = 2; version < 40; ++version)
        write(version, 20, noon + minutes(version));
    EXPECT_EQ(kept().size(), 21U);
    EXPECT_EQ(kept().front(), 1);
    EXPECT_TRUE(store->history(id).front().beforeLoss);
    EXPECT_EQ(store->history(id).back().writtenAt, noon + 39min);
    EXPECT_EQ(store->history(id).back().bytes, std::ssize(documentOf(20)));
}

TEST_P(StoreSuite, RestoringMakesANewHigherVersion)
{
    write(0, 30);
    write(1, 5);
    EXPECT_EQ(restoreVersion(*store, id, 1, noon + 1h), 3);
    EXPECT_EQ(store->newestDocument(id)->body, documentOf(30));
    EXPECT_THAT(kept(), ElementsAre(1, 2, 3));
    EXPECT_EQ(store->history(id).back().words, 30);
    EXPECT_FALSE(restoreVersion(*store, id, 9, noon));
}

TEST_P(StoreSuite, AWriterThatLostARaceLooksAgain)
{
    write(0, 30);
    std::vector<std::int64_t> seen;
    const auto condition = [&](std::int64_t current) {
        seen.push_back(current);
        if (current == 1)
            write(1, 5);
        return true;
    };
    EXPECT_EQ(writeVersion(*store, id, {.body = "{}", .words = 5}, condition), 3);
    EXPECT_THAT(seen, ElementsAre(1, 2));
    const auto records = store->history(id);
    EXPECT_TRUE(records[0].beforeLoss);
    EXPECT_FALSE(records[1].beforeLoss);
}

TEST_P(StoreSuite, OneOfManyWritersWinsEachVersion)
{
    constexpr int writers = 4;
    std::latch start(writers);
    std::array<std::atomic<int>, 10> wins{};
    std::vector<std::jthread> threads;
    for (int writer = 0; writer < writers; ++writer) {
        threads.emplace_back([&] {
            const auto own = place->open();
            start.arrive_and_wait();
            for (std::size_t version = 0; version < wins.size(); ++version)
                wins[version] +=
                    own->append(id, static_cast<std::int64_t>(version), {.body = "{}"}, {}) ? 1 : 0;
        });
    }
    threads.clear();
    for (const auto &each : wins)
        EXPECT_EQ(each, 1);
}

TEST_P(StoreSuite, AnotherProcessSeesAndIsSeenAtOnce)
{
    const auto other = place->open();
    write(0, 3);
    EXPECT_EQ(other->newestDocument(id)->version, 1);
    other->setToken(id, "sugar", sha256("new"));
    EXPECT_TRUE(store->notebookOfToken(sha256("new")));
    EXPECT_FALSE(store->notebookOfToken(sha256("one")));
}
