#include "practice/Pieces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <numeric>

namespace nimbrelle::practice {

TEST(Pieces, CutBetweenWordsAndAfterMarks)
{
    EXPECT_THAT(
        piecesOf("ngl 就是说实话，网上用。"), testing::ElementsAre("ngl ", "就是说", "实话，", "网上用。"));
}

TEST(Pieces, TogetherAreTheTextAndDivideNoCharacter)
{
    const std::string text = "a\u0301b 👨‍👩‍👧 好👍🏽的\n- **x**：ok";
    const auto pieces = piecesOf(text);
    EXPECT_EQ(std::accumulate(pieces.begin(), pieces.end(), std::string()), text);
    for (const std::string &piece : pieces)
        EXPECT_NE(static_cast<unsigned char>(piece.front()) & 0xC0, 0x80) << piece;
    EXPECT_THAT(pieces, testing::Contains(testing::HasSubstr("👨‍👩‍👧")));
    EXPECT_TRUE(piecesOf("").empty());
}

} // namespace nimbrelle::practice
