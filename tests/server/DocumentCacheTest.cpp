#include "server/DocumentCache.h"

#include <gtest/gtest.h>

using namespace nimbrelle::server;

namespace {

std::shared_ptr<const Document> document(std::int64_t version, std::size_t bytes)
{
    return std::make_shared<const Document>(Document{.version = version, .body = std::string(bytes, 'x')});
}

} // namespace

TEST(DocumentCache, GivesOnlyTheVersionAskedFor)
{
    DocumentCache cache(100);
    cache.put(1, document(5, 10));
    EXPECT_TRUE(cache.find(1, 5));
    EXPECT_FALSE(cache.find(1, 6));
    EXPECT_FALSE(cache.find(2, 5));
    cache.put(1, document(4, 10)); // a slower reader's
    EXPECT_TRUE(cache.find(1, 5));
}

TEST(DocumentCache, TheLeastUsedMakesRoom)
{
    DocumentCache cache(100);
    cache.put(1, document(1, 40));
    cache.put(2, document(1, 40));
    EXPECT_TRUE(cache.find(1, 1));
    cache.put(3, document(1, 40));
    EXPECT_TRUE(cache.find(1, 1));
    EXPECT_FALSE(cache.find(2, 1));
    cache.put(3, document(2, 101));
    EXPECT_FALSE(cache.find(3, 1));
    EXPECT_FALSE(cache.find(3, 2));
    EXPECT_TRUE(cache.find(1, 1));
}
