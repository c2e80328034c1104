#include "ai/LineReader.h"

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

QByteArrayList linesOf(const QByteArrayList &pieces)
{
    LineReader reader;
    QByteArrayList lines;
    for (const QByteArray &piece : pieces)
        lines += reader.read(piece);
    if (const auto last = reader.finish())
        lines.append(*last);
    return lines;
}

TEST(LineReader, EndsALineAtEachOfTheThreeEnds)
{
    EXPECT_EQ(linesOf({"a\nb\rc\r\nd"}), (QByteArrayList{"a", "b", "c", "d"}));
    EXPECT_EQ(linesOf({"\n\r\r\n\n\r"}), (QByteArrayList{"", "", "", "", ""}));
    EXPECT_EQ(linesOf({"a\xE2\x80\xA8"
                       "b\x0B"
                       "c\xC2\x85"
                       "d"}),
        (QByteArrayList{"a\xE2\x80\xA8"
                        "b\x0B"
                        "c\xC2\x85"
                        "d"}))
        << "no other end of line counts";
    EXPECT_EQ(linesOf({""}), QByteArrayList());
}

TEST(LineReader, GivesALineOutAsSoonAsItsEndIsSeen)
{
    LineReader reader;
    EXPECT_EQ(reader.read("a\r"), QByteArrayList{"a"});
    EXPECT_EQ(reader.read(""), QByteArrayList());
    EXPECT_EQ(reader.read("\n"), QByteArrayList()) << "the second half of an end that was seen";
    EXPECT_EQ(reader.read("\n"), QByteArrayList{""});
}

TEST(LineReader, DoesNotCareWhereTheBytesAreCut)
{
    const QByteArray text = "词义\r\n\r\n一\r二\n\r三\n\n\r\n🇨🇳";
    const QByteArrayList whole = linesOf({text});
    ASSERT_EQ(whole.size(), 9);
    for (qsizetype first = 0; first <= text.size(); ++first) {
        for (qsizetype second = first; second <= text.size(); ++second) {
            const QByteArrayList pieces{
                text.first(first), text.sliced(first, second - first), text.sliced(second)};
            ASSERT_EQ(linesOf(pieces), whole) << "cut at " << first << " and " << second;
        }
    }
}

} // namespace
