#include "server/DocumentCache.h"

#include <gtest/gtest.h>

using namespace nimbrelle::server;

namespace {

std::shared_ptr<const Document> document(
    std::int64_t version, std::size_t bytes, std::chrono::sys_seconds writtenAt = {})
{
    return std::make_shared<const Document>(
        Document{.version = version, .writtenAt = writtenAt, .body = std::string(bytes, 'x')});
}

VersionRecord record(std::int64_t version, std::int64_t bytes, std::chrono::sys_seconds writtenAt = {})
{
    return {.version = version, .writtenAt = writtenAt, .bytes = bytes};
}

} // namespace

TEST(DocumentCache, GivesOnlyTheVersionAskedFor)
{
    DocumentCache cache(100);
    cache.put(1, document(5, 10));
    EXPECT_TRUE(cache.find(1, record(5, 10)));
    EXPECT_FALSE(cache.find(1, record(6, 10)));
    EXPECT_FALSE(cache.find(2, record(5, 10)));
    cache.put(1, document(4, 10)); // a slower reader's
    EXPECT_TRUE(cache.find(1, record(5, 10)));

    // After a failover another version may have the same number.
    const std::chrono::sys_seconds later(std::chrono::seconds(1));
    EXPECT_FALSE(cache.find(1, record(5, 10, later)));
    EXPECT_FALSE(cache.find(1, record(5, 11)));
    cache.put(1, document(5, 10, later));
    EXPECT_TRUE(cache.find(1, record(5, 10, later)));
}

TEST(DocumentCache, TheLeastUsedMakesRoom)
{
    DocumentCache cache(100);
    cache.put(1, document(1, 40));
    cache.put(2, document(1, 40));
    EXPECT_TRUE(cache.find(1, record(1, 40)));
    cache.put(3, document(1, 40));
    EXPECT_TRUE(cache.find(1, record(1, 40)));
    EXPECT_FALSE(cache.find(2, record(1, 40)));
    cache.put(3, document(2, 101));
    EXPECT_FALSE(cache.find(3, record(1, 40)));
    EXPECT_FALSE(cache.find(3, record(2, 101)));
    EXPECT_TRUE(cache.find(1, record(1, 40)));
}
