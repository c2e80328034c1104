#include "server/SqliteStore.h"

#include "server/DataDirectory.h"
#include "server/support/TestServer.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <fstream>
#include <gmock/gmock.h>

using namespace nimbrelle::server;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

class SqliteStoreTest : public testing::Test {
protected:
    // What opening and checking the file says; nothing when all is well.
    std::string failure(StoreFailure::Kind kind) const
    {
        try {
            SqliteStore(file).check();
            return "";
        } catch (const StoreFailure &caught) {
            EXPECT_EQ(caught.kind(), kind);
            return caught.what();
        }
    }

    TemporaryDirectory directory;
    std::filesystem::path file = directory.path() / "notebooks.db";
};

} // namespace

TEST_F(SqliteStoreTest, ADamagedFileSaysWhatToDo)
{
    SqliteStore::create(file);
    {
        SqliteStore store(file);
        store.addNotebook("first", "salt", sha256("one"), {});
        for (int version = 0; version < 40; ++version)
            ASSERT_TRUE(store.append(1, version, {.body = documentOf(2000)}, {}));
    }
    EXPECT_EQ(failure(StoreFailure::Kind::damaged), "");
    std::fstream(file, std::ios::in | std::ios::out).seekp(8192) << std::string(20'000, '\xaa');
    EXPECT_THAT(failure(StoreFailure::Kind::damaged),
        AllOf(HasSubstr("put the file back from a backup"), Not(HasSubstr("\n"))));

    std::filesystem::remove(file);
    SqliteStore::create(file);
    SQLite::Database(file, SQLite::OPEN_READWRITE).exec("DROP TABLE versions");
    EXPECT_THAT(failure(StoreFailure::Kind::damaged),
        AllOf(HasSubstr("no such table"), HasSubstr("put the file back from a backup")));
    std::filesystem::resize_file(file, 0);
    EXPECT_THAT(failure(StoreFailure::Kind::other), HasSubstr("nimbrelle-server init"));
}

TEST_F(SqliteStoreTest, AFileThatIsNotOursIsLeftAsItIs)
{
    SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec("CREATE TABLE songs (name)");
    const std::string bytes = readFile(file);
    EXPECT_THAT(failure(StoreFailure::Kind::other), HasSubstr("not a notebook database"));
    EXPECT_THROW(SqliteStore::create(file), StoreFailure);
    EXPECT_EQ(readFile(file), bytes);

    std::filesystem::remove(file);
    SqliteStore::create(file);
    SQLite::Database(file, SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 3");
    EXPECT_THAT(failure(StoreFailure::Kind::other), HasSubstr("newer nimbrelle-server"));
}

TEST_F(SqliteStoreTest, AnEarlierVersionsFileIsTakenOver)
{
    SqliteStore::create(file);
    SqliteStore(file).addNotebook("first", "salt", sha256("one"), {});
    SQLite::Database(file, SQLite::OPEN_READWRITE)
        .exec("ALTER TABLE notebooks DROP COLUMN quota_bytes;"
              "ALTER TABLE notebooks DROP COLUMN quota_versions; PRAGMA user_version = 1");
    SqliteStore::create(file);
    SqliteStore store(file);
    store.setQuota(1, {.bytes = 7, .versions = 8});
    EXPECT_EQ(store.notebookOfToken(sha256("one"))->quota, (OwnQuota{.bytes = 7, .versions = 8}));
}
