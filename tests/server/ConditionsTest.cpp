#include "server/Conditions.h"

#include <gtest/gtest.h>

using nimbrelle::server::EntityTags;

TEST(EntityTags, ReadsOnlyWhatIsWellFormed)
{
    for (const char *text : {"*", " * ", "\"7\"", "W/\"7\"", "\"1\", W/\"2\" ,\"3\"", ", \"7\",,", "\"\""})
        EXPECT_TRUE(EntityTags::parse(text)) << text;
    for (const char *text : {"", " ", ",", "7", "\"7", "7\"", "\"a b\"", "w/\"7\"", "W/7", "\"1\" \"2\"",
             "*, \"7\"", "\"1\"x", "W/", "\"\x7f\""})
        EXPECT_FALSE(EntityTags::parse(text)) << text;
}
