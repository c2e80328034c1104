#include "server/DocumentCache.h"

#include "server/HeldBody.h"

#include <gtest/gtest.h>

using namespace nimbrelle::server;

namespace {

std::shared_ptr<const Document> document(std::int64_t version, std::size_t bytes)
{
    return std::make_shared<const Document>(Document{version, std::string(bytes, 'x')});
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

TEST(HeldBody, TakesFromTheBudgetOnlyAsBytesArrive)
{
    BodyBudget budget(1 << 20);
    {
        HeldBody body(budget, 1 << 20, 900'000);
        EXPECT_EQ(budget.taken(), 0U);
        EXPECT_EQ(body.append("abc"), HeldBody::Outcome::kept);
        EXPECT_LT(budget.taken(), 100'000U);
        HeldBody other(budget, 1 << 20, std::nullopt);
        EXPECT_EQ(other.append(std::string(1'000'000, 'x')), HeldBody::Outcome::noRoom);
        EXPECT_EQ(other.size(), 0U);
        EXPECT_EQ(body.bytes(), "abc");
    }
    EXPECT_EQ(budget.taken(), 0U);
}

TEST(HeldBody, EndsAtTheLimitWhateverWasAnnounced)
{
    BodyBudget budget(1 << 20);
    HeldBody body(budget, 1000, 10);
    EXPECT_EQ(body.append(std::string(1000, 'x')), HeldBody::Outcome::kept);
    EXPECT_EQ(body.append("y"), HeldBody::Outcome::tooLong);
    EXPECT_EQ(budget.taken(), 0U);
}
