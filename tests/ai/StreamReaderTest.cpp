#include "ai/StreamReader.h"

#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

QByteArray event(const QByteArray &content)
{
    return R"(data: {"choices":[{"delta":{"content":")" + content + "\"}}]}";
}

QStringList piecesOf(const QByteArrayList &parts)
{
    StreamReader reader;
    QStringList pieces;
    for (const QByteArray &part : parts)
        pieces += reader.read(part);
    return pieces + reader.finish();
}

TEST(StreamReader, ReadsOnlyThePiecesOfEvents)
{
    const struct {
        const char *line;
        QString piece;
    } cases[] = {
        {R"(data: {"choices":[{"delta":{"content":" 词 "}}]})", u" 词 "_s},
        {R"(data:{"choices":[{"delta":{"content":"x"}}]})", u"x"_s},
        {"data:\t {\"choices\":[{\"index\":0,\"delta\":{\"role\":\"a\",\"content\":\"x\"}}],\"id\":1} \t",
            u"x"_s},
        {R"(data: {"choices":[{"delta":{"content":"first"}},{"delta":{"content":"second"}}]})", u"first"_s},
        {R"( data: {"choices":[{"delta":{"content":"x"}}]})", {}},
        {R"(Data: {"choices":[{"delta":{"content":"x"}}]})", {}},
        {R"(: data: {"choices":[{"delta":{"content":"x"}}]})", {}},
        {R"(data: {"choices":[]})", {}},
        {R"(data: {"choices":[{"delta":{"content":null}}]})", {}},
        {R"(data: {"choices":[{"delta":{"content":""}}]})", {}},
        {R"(data: {"choices":[{"delta":{"content":1}}]})", {}},
        {R"(data: {"choices":[{"delta":{"content":"x"}},{}]})", {}},
        {R"(data: {"choices":[{"delta":{"content":"x"}}]}})", {}},
    };
    for (const auto &one : cases)
        EXPECT_EQ(piecesOf({one.line}), one.piece.isEmpty() ? QStringList() : QStringList{one.piece})
            << one.line;
}

TEST(StreamReader, EndsAtDoneAndReadsNothingAfterIt)
{
    for (const QByteArray done : {"data: [DONE]", "data:[DONE]", "data:\t[DONE] "}) {
        StreamReader reader;
        EXPECT_EQ(reader.read(event("a") + "\r" + done), QStringList{u"a"_s});
        EXPECT_FALSE(reader.isDone()) << "the line may go on";
        EXPECT_EQ(reader.read("\n" + event("b") + "\n"), QStringList());
        EXPECT_TRUE(reader.isDone());
    }
    StreamReader reader;
    reader.read("data: [done]\ndata: [DONE] [DONE]\n[DONE]\n");
    EXPECT_FALSE(reader.isDone());
}

TEST(StreamReader, DoesNotCareWhereTheBytesAreCut)
{
    const QByteArray stream = ": hello\r\n\r\n" + event("不情") + "\r\n\r\n" + event("愿的🇨🇳") + "\r"
        + event("e\u0301") + "\n\ndata: {\"choices\":[{\n\xFF\xFE\n" + event("，\u2028末") + "\r\n\r\n"
        + event("尾");
    const QStringList whole{u"不情"_s, u"愿的🇨🇳"_s, u"e\u0301"_s, u"，\u2028末"_s, u"尾"_s};
    ASSERT_EQ(piecesOf({stream}), whole);
    for (qsizetype first = 0; first <= stream.size(); ++first) {
        for (qsizetype second = first; second <= std::min(first + 8, stream.size()); ++second)
            ASSERT_EQ(
                piecesOf({stream.first(first), stream.sliced(first, second - first), stream.sliced(second)}),
                whole)
                << "cut at " << first << " and " << second;
    }
}

TEST(ErrorBodyReader, JoinsItsLinesAndStopsWhenTheyAreLongEnough)
{
    ErrorBodyReader reader;
    EXPECT_FALSE(reader.completesWith("{\n  \"error\": \"太"));
    EXPECT_FALSE(reader.completesWith("忙\"\r\n}"));
    EXPECT_TRUE(reader.completesWith({}));
    EXPECT_EQ(reader.text(), u"{  \"error\": \"太忙\"}"_s);

    ErrorBodyReader full;
    const QByteArray line = QByteArray("词").repeated(100) + "\n";
    EXPECT_FALSE(full.completesWith(line));
    EXPECT_FALSE(full.completesWith(line)) << "exactly 200 characters";
    EXPECT_TRUE(full.completesWith(line));
}

} // namespace
