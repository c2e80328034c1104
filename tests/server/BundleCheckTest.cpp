#include "server/BundleCheck.h"

#include <gtest/gtest.h>

using nimbrelle::server::countWords;

TEST(BundleCheck, CountsOnlyTheElementsOfWords)
{
    EXPECT_EQ(countWords(R"({"words":[{"a":[1,2]},{"words":[1,2,3]},{}],"notes":[1,2,3,4]})"), 3);
    EXPECT_EQ(countWords(R"({"notes":[{"words":[1,2]}]})"), 0);
    EXPECT_EQ(countWords(" {\"words\":[]}\n"), 0);
    EXPECT_EQ(countWords(R"({"words":null})"), 0);
    EXPECT_EQ(countWords("{}"), 0);
    EXPECT_EQ(countWords(R"({"words":["单词", 1e300, 123456789012345678901234567890]})"), 3);
}

TEST(BundleCheck, RefusesWhatNoDeviceWrites)
{
    using namespace std::string_view_literals;
    const std::string_view texts[] = {"", "[]", "null", "7", "\"words\"", "{", R"({"words":[1})",
        R"({"words":{}})", R"({"words":3})", "{} {}", "{}\0garbage"sv, "{}x", "{\"a\":\"\xff\"}",
        "{\"a\":\"\xed\xa0\x80\"}", "\xef\xbb\xbf{}", "{'a':1}", "{\"a\":01}"};
    for (const auto text : texts)
        EXPECT_FALSE(countWords(text)) << text;
}

TEST(BundleCheck, EndlessNestingIsRefusedAtOnce)
{
    const std::string deep = R"({"words":)" + std::string(8 << 20, '[');
    EXPECT_FALSE(countWords(deep));
}
