#include "server/Conditions.h"

#include <gtest/gtest.h>

using namespace nimbrelle::server;

TEST(EntityTags, ReadsOnlyWhatIsWellFormed)
{
    for (const char *text : {"*", " * ", "\"7\"", "W/\"7\"", "\"1\", W/\"2\" ,\"3\"", ", \"7\",,", "\"\""})
        EXPECT_TRUE(EntityTags::parse(text)) << text;
    for (const char *text : {"", " ", ",", "7", "\"7", "7\"", "\"a b\"", "w/\"7\"", "W/7", "\"1\" \"2\"",
             "*, \"7\"", "\"1\"x", "W/", "\"\x7f\""})
        EXPECT_FALSE(EntityTags::parse(text)) << text;
}

TEST(EntityTags, AWeakTagMatchesReadsOnly)
{
    struct {
        const char *text;
        std::int64_t version;
        bool strongly;
        bool weakly;
    } const cases[] = {
        {"\"7\"", 7, true, true},
        {"W/\"7\"", 7, false, true},
        {"W/\"7\", \"7\"", 7, true, true},
        {"\"6\", \"8\"", 7, false, false},
        {"\"07\"", 7, false, false},
        {"\"9223372036854775807\"", 9223372036854775807, true, true},
        {"*", 7, true, true},
        {"*", 0, false, false},
        {"\"0\"", 0, true, true},
    };
    for (const auto &each : cases) {
        const auto tags = EntityTags::parse(each.text);
        ASSERT_TRUE(tags) << each.text;
        EXPECT_EQ(tags->matchStrongly(each.version), each.strongly) << each.text << " on " << each.version;
        EXPECT_EQ(tags->matchWeakly(each.version), each.weakly) << each.text << " on " << each.version;
    }
}

TEST(Conditions, AWriteNeedsAllOfThem)
{
    const Conditions onlyNew{std::nullopt, EntityTags::parse("*")};
    EXPECT_TRUE(onlyNew.allowWriteOver(0));
    EXPECT_FALSE(onlyNew.allowWriteOver(1));
    const Conditions both{EntityTags::parse("\"3\""), EntityTags::parse("W/\"3\"")};
    EXPECT_FALSE(both.allowWriteOver(3));
}
