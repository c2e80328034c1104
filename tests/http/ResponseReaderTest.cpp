#include "http/ResponseReader.h"

#include <gtest/gtest.h>

using namespace nimbrelle;

namespace {

struct Outcome {
    int status = 0;
    QByteArray tag;
    QByteArray body;
    bool isComplete = false;
    std::optional<ResponseFault> fault;

    bool operator==(const Outcome &) const = default;
};

enum class Ending { open, closed };

Outcome read(const QByteArrayList &parts, Ending ending = Ending::closed,
    ResponseReader::Body expected = ResponseReader::Body::asFramed)
{
    ResponseReader reader(expected);
    QByteArray body;
    for (const QByteArray &part : parts)
        body += reader.read(part);
    if (ending == Ending::closed)
        reader.end();
    return {reader.status(), reader.header("etag"), body, reader.isComplete(), reader.fault()};
}

std::optional<ResponseFault> faultIn(const QByteArray &bytes)
{
    return read({bytes}, Ending::open).fault;
}

QByteArray bodyIn(const QByteArray &bytes, Ending ending = Ending::open)
{
    const Outcome outcome = read({bytes}, ending);
    return outcome.isComplete ? outcome.body : QByteArray("(incomplete)");
}

// Of `size` bytes in all.
QByteArray headOf(qsizetype size)
{
    const QByteArray begin = "HTTP/1.1 200 OK\r\nX: ", end = "\r\n\r\n";
    return begin + QByteArray(size - begin.size() - end.size(), 'x') + end;
}

TEST(ResponseReader, HoweverItIsCutTheOutcomeIsTheSame)
{
    const QByteArray responses[] = {
        "HTTP/1.1 200 OK\r\nETag: \"7\"\r\nContent-Length: 5\r\n\r\nhello and more",
        "HTTP/1.1 100 Continue\r\nX: y\r\n\r\nHTTP/1.1 103 Early Hints\r\n\r\nHTTP/1.1 404\r\n\r\nuntil the "
        "end",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5;a=\"b\"\r\nhello\r\n00A ; x\r\n, "
        "world.\r\n\r\n0\r\n"
        "Trailer: 1\r\n\r\nmore",
        "HTTP/1.1 200 OK\nETag: \"8\"\nTransfer-Encoding: chunked\n\n1\nx\n0\n\n",
        "HTTP/1.1 304 Not Modified\r\nETag: W/\"9\"\r\nContent-Length: 100\r\n\r\n",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabcd\r\n0\r\n\r\n",
        "HTTP/1.1 200 OK\r\nX: a\r\n folded\r\n\r\n",
    };
    for (const QByteArray &response : responses) {
        for (const Ending ending : {Ending::open, Ending::closed}) {
            const Outcome whole = read({response}, ending);
            QByteArrayList bytes;
            for (qsizetype i = 0; i < response.size(); ++i) {
                bytes.append(response.sliced(i, 1));
                EXPECT_EQ(read({response.first(i), response.sliced(i)}, ending), whole)
                    << i << ' ' << response.constData();
            }
            EXPECT_EQ(read(bytes, ending), whole) << response.constData();
        }
    }
}

TEST(ResponseReader, FindsTheEndOfEveryBody)
{
    EXPECT_EQ(bodyIn("HTTP/1.1 200 OK\r\nContent-Length: 2, 2\r\ncontent-length:2\r\n\r\nhello"), "he");
    EXPECT_EQ(bodyIn("HTTP/1.0 200 OK\r\nContent-Length: 0\r\n\r\nhello"), "");
    EXPECT_EQ(bodyIn("HTTP/1.1 204 None\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n"), "");
    EXPECT_EQ(bodyIn("HTTP/1.1 304 Same\r\nContent-Length: 5\r\n\r\nhello"), "");
    EXPECT_EQ(
        bodyIn(
            "HTTP/1.1 200 OK\r\nTransfer-Encoding: Chunked\r\nContent-Length: 9\r\n\r\n2\r\nhe\r\n0\r\n\r\n"),
        "he");
    EXPECT_EQ(bodyIn("HTTP/1.1 200 OK\r\n\r\nhello"), "(incomplete)");
    EXPECT_EQ(bodyIn("HTTP/1.1 200 OK\r\n\r\nhello", Ending::closed), "hello");
    const QByteArray sized = "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n";
    EXPECT_TRUE(read({sized}, Ending::open, ResponseReader::Body::none).isComplete);
    EXPECT_FALSE(read({sized}, Ending::open).isComplete);
}

TEST(ResponseReader, WhatIsNotHttpIsMalformed)
{
    const QByteArray heads[] = {"\r\n", "SSH-2.0-x\r\n", "HTTP/2 200\r\n", "HTTP/1.1 20\r\n",
        "HTTP/1.1  200 OK\r\n", "HTTP/1.1 2000 OK\r\n", "HTTP/1.1 +20 OK\r\n", "HTTP/1.1 099 Low\r\n",
        "HTTP/1.1 101 Switch\r\n", "HTTP/1.1 200 O\rK\r\n", "HTTP/1.1 200 OK\r\nno colon\r\n",
        "HTTP/1.1 200 OK\r\n: nameless\r\n", "HTTP/1.1 200 OK\r\nX : blank\r\n",
        "HTTP/1.1 200 OK\r\n X: folded\r\n", "HTTP/1.1 200 OK\r\nX: a\r\n\tfolded\r\n",
        QByteArray("HTTP/1.1 200 OK\r\nX: a\0b\r\n", 25)};
    for (const QByteArray &head : heads)
        EXPECT_EQ(faultIn(head), ResponseFault::malformed) << head.constData();
    for (const char *header : {"Content-Length: ", "Content-Length: x", "Content-Length: -1",
             "Content-Length: +1", "Content-Length: 1 1", "Content-Length: 1\r\nContent-Length: 2",
             "Content-Length: 1, 2", "Content-Length: 9223372036854775808",
             "Transfer-Encoding: gzip, chunked", "Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked"})
        EXPECT_EQ(faultIn(QByteArray("HTTP/1.1 200 OK\r\n") + header + "\r\n\r\n"), ResponseFault::malformed)
            << header;
    for (const char *chunks : {"\r\n", "x\r\n", "-1\r\n", "0x1\r\n", "1 1\r\n", "8000000000000000\r\n",
             "00000000000000001\r\n", "1\r\nab\r\n", "1\r\na2\r\n"})
        EXPECT_EQ(faultIn(QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n") + chunks),
            ResponseFault::malformed)
            << chunks;
}

TEST(ResponseReader, TheHeadMayHaveSixtyFourKilobytes)
{
    constexpr qsizetype limit = 64 * 1024;
    EXPECT_TRUE(read({headOf(limit)}).isComplete);
    EXPECT_EQ(faultIn(headOf(limit + 1)), ResponseFault::oversized);
    EXPECT_EQ(faultIn(headOf(limit + 1).first(limit)), std::nullopt);
    EXPECT_EQ(faultIn(QByteArray(limit + 1, 'x')), ResponseFault::oversized) << "without the end of a line";
    const QByteArray interim = "HTTP/1.1 102 Processing\r\n\r\n";
    EXPECT_EQ(faultIn(interim.repeated(limit / interim.size() + 1)), ResponseFault::oversized);
}

TEST(ResponseReader, OnlyTheBodyHasNoLimitInChunks)
{
    const QByteArray head = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    const QByteArray many = QByteArray("0000000000000001\r\nx\r\n").repeated(100'000);
    EXPECT_EQ(bodyIn(head + many + "0\r\n\r\n").size(), 100'000);
    EXPECT_EQ(faultIn(head + QByteArray("1;ext=1\r\nx\r\n").repeated(11'000)), ResponseFault::oversized);
    EXPECT_EQ(faultIn(head + "0\r\n" + QByteArray("T: 1\r\n").repeated(11'000)), ResponseFault::oversized);
}

TEST(ResponseReader, ACloseAnywhereBeforeTheEndIsToldApart)
{
    const QByteArray response = "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nTransfer-Encoding: "
                                "chunked\r\n\r\n1\r\nx\r\n0\r\n\r\n";
    for (qsizetype i = 0; i < response.size(); ++i)
        EXPECT_EQ(read({response.first(i)}).fault, ResponseFault::cutShort) << i;
    EXPECT_EQ(read({response}).fault, std::nullopt);
}

} // namespace
