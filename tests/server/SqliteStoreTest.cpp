#include "server/SqliteStore.h"

#include "server/support/Stage.h"

#include <fstream>
#include <gmock/gmock.h>

using namespace nimbrelle::server;
using testing::HasSubstr;

TEST(SqliteStore, ADamagedFileSaysWhatToDo)
{
    const ScratchFolder folder;
    const auto file = folder.path() / "notebooks.db";
    SqliteStore::create(file);
    {
        SqliteStore store(file);
        store.addNotebook("first", "salt", sha256("one"), {});
        for (int version = 0; version < 40; ++version)
            ASSERT_TRUE(store.append(1, version, {.body = documentOf(2000)}, {}));
    }
    const auto failure = [&] {
        try {
            SqliteStore(file).check();
            return std::string();
        } catch (const StoreFailure &caught) {
            EXPECT_EQ(caught.kind(), StoreFailure::Kind::damaged);
            return std::string(caught.what());
        }
    };
    const auto damage = [&](std::streamoff offset, const std::string &bytes) {
        std::fstream(file, std::ios::in | std::ios::out | std::ios::binary).seekp(offset) << bytes;
    };
    EXPECT_EQ(failure(), "");
    damage(8192, std::string(20'000, '\xaa'));
    EXPECT_THAT(failure(), HasSubstr("put the file back from a backup"));
    damage(0, "no database at all");
    EXPECT_THAT(failure(), HasSubstr("is damaged"));
}
