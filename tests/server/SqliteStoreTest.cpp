#include "server/SqliteStore.h"

#include "server/support/Stage.h"

#include <fstream>
#include <gmock/gmock.h>
#include <thread>

using namespace nimbrelle::server;
using namespace std::chrono;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr sys_seconds noon = sys_days(2026y / March / 1) + 12h;

class SqliteStoreTest : public testing::Test {
protected:
    SqliteStoreTest()
    {
        SqliteStore::create(file);
        store = std::make_unique<SqliteStore>(file);
        store->addNotebook("first", "salt", sha256("one"), noon);
        id = store->notebookNamed("first")->id;
    }

    std::optional<std::int64_t> write(std::int64_t over, int words, sys_seconds at = noon)
    {
        const Conditions conditions{EntityTags::parse(entityTag(over)), std::nullopt};
        return store->write(id, conditions, {documentOf(words), words, at});
    }
    std::vector<std::int64_t> kept()
    {
        std::vector<std::int64_t> found;
        for (const auto &record : store->history(id))
            found.push_back(record.version);
        return found;
    }
    void damage(std::streamoff offset, const std::string &bytes) const
    {
        std::fstream(file, std::ios::in | std::ios::out | std::ios::binary).seekp(offset) << bytes;
    }

    ScratchFolder folder;
    std::filesystem::path file = folder.path() / "notebooks.db";
    std::unique_ptr<SqliteStore> store;
    std::int64_t id = 0;
};

} // namespace

TEST_F(SqliteStoreTest, ATokenOpensItsOwnNotebookOnly)
{
    store->addNotebook("second", "pepper", sha256("two"), noon);
    EXPECT_EQ(store->notebookOfToken(sha256("two"))->name, "second");
    EXPECT_FALSE(store->notebookOfToken(sha256("three")));
    auto nearly = sha256("two");
    nearly.back() ^= 1; // found by the index, refused by the comparison
    EXPECT_FALSE(store->notebookOfToken(nearly));

    store->setToken(id, "salt", std::nullopt);
    EXPECT_FALSE(store->notebookOfToken(sha256("one")));
    store->setToken(id, "sugar", sha256("four"));
    EXPECT_EQ(store->notebookOfToken(sha256("four"))->name, "first");
}

TEST_F(SqliteStoreTest, AVersionIsWrittenOverOnce)
{
    EXPECT_EQ(store->read(id), nullptr);
    EXPECT_EQ(write(0, 3), 1);
    EXPECT_FALSE(write(0, 4));
    EXPECT_FALSE(write(2, 4));
    EXPECT_EQ(store->read(id)->body, documentOf(3));
    EXPECT_EQ(write(1, 4), 2);
    EXPECT_EQ(store->read(id)->version, 2);
    EXPECT_EQ(store->notebookNamed("first")->version, 2);
}

TEST_F(SqliteStoreTest, WhatStoodBeforeALossOutlivesAllElse)
{
    write(0, 30);
    write(1, 20);
    for (int version = 2; version < 40; ++version)
        write(version, 20, noon + minutes(version));
    EXPECT_EQ(kept().size(), 21U);
    EXPECT_EQ(kept().front(), 1);
    EXPECT_TRUE(store->history(id).front().beforeLoss);
}

TEST_F(SqliteStoreTest, RestoringMakesANewHigherVersion)
{
    write(0, 30);
    write(1, 5);
    EXPECT_EQ(store->restore(id, 1, noon + 1h), 3);
    EXPECT_EQ(store->read(id)->body, documentOf(30));
    EXPECT_THAT(kept(), ElementsAre(1, 2, 3));
    EXPECT_EQ(store->history(id).back().words, 30);
    EXPECT_FALSE(store->restore(id, 9, noon));
}

TEST_F(SqliteStoreTest, AnotherProcessSeesAndIsSeenAtOnce)
{
    SqliteStore other(file);
    write(0, 3);
    EXPECT_EQ(other.read(id)->version, 1);
    other.setToken(id, "sugar", sha256("new"));
    EXPECT_TRUE(store->notebookOfToken(sha256("new")));
    EXPECT_FALSE(store->notebookOfToken(sha256("one")));
}

TEST_F(SqliteStoreTest, ADamagedFileSaysWhatToDo)
{
    for (int version = 0; version < 40; ++version)
        write(version, 2000);
    store.reset();
    const auto failure = [&] {
        try {
            SqliteStore opened(file, SqliteStore::Check::quick);
            return std::string();
        } catch (const StoreFailure &caught) {
            EXPECT_EQ(caught.kind(), StoreFailure::Kind::damaged);
            return std::string(caught.what());
        }
    };
    EXPECT_EQ(failure(), "");
    damage(8192, std::string(20'000, '\xaa'));
    EXPECT_THAT(failure(), HasSubstr("put the file back from a backup"));
    damage(0, "no database at all");
    EXPECT_THAT(failure(), HasSubstr("is damaged"));
}
