#include "sync/SyncProtocol.h"

#include "support/Printers.h"
#include "sync/FakeNetwork.h"
#include "sync/SyncError.h"
#include "sync/SyncLink.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

TEST(SyncProtocol, ReadsVersionsFromETags)
{
    const std::pair<const char *, qint64> cases[]{{"\"12\"", 12}, {"W/\"12\"", 12}, {"12", 12}, {"\"0\"", 0},
        {"\"-3\"", -3}, {"\"9223372036854775807\"", 9223372036854775807}, {"\"9223372036854775808\"", 0},
        {"", 0}, {"\"\"", 0}, {"\"a\"", 0}, {"\"1 2\"", 0}, {"\" 12\"", 0}, {"\"12\", \"13\"", 0},
        {"\"1.5\"", 0}, {"\"0x1\"", 0}};
    for (const auto &[tag, version] : cases)
        EXPECT_EQ(SyncProtocol::versionOf(tag), version) << tag;
}

// What a request that gets `response` comes to: the user's sentence, or empty.
template <class Call> QString sentenceAfter(const SyncResponse &response, Call call)
{
    FakeNetwork network;
    const auto transport = network.connect()(SyncLink{});
    SyncProtocol protocol(*transport);
    QString sentence;
    const auto run = [&]() -> QCoro::Task<> {
        try {
            co_await call(protocol);
        } catch (const std::exception &error) {
            sentence = describe(error);
        }
    };
    const auto task = run();
    network.answer(response);
    return sentence;
}

TEST(SyncProtocol, TakesOnlyTheStatusesOfEachRequest)
{
    const auto ping = [](SyncProtocol &protocol) { return protocol.ping({}); };
    const auto read = [](SyncProtocol &protocol) { return protocol.read(1, {}); };
    const auto write = [](SyncProtocol &protocol) { return protocol.write(1, "{}", {}); };
    const QByteArray empty = "{}";
    EXPECT_EQ(sentenceAfter({200, {}, {}}, ping), QString());
    EXPECT_EQ(sentenceAfter({204, {}, {}}, ping), u"服务器出错了（204）"_s);
    for (const int status : {200, 304, 404})
        EXPECT_EQ(sentenceAfter({status, {}, empty}, read), QString()) << status;
    const auto readWhole = [](SyncProtocol &protocol) { return protocol.read(0, {}); };
    EXPECT_EQ(sentenceAfter({304, {}, {}}, readWhole), u"服务器出错了（304）"_s);
    EXPECT_EQ(sentenceAfter({412, {}, {}}, read), u"服务器出错了（412）"_s);
    EXPECT_EQ(sentenceAfter({302, {}, {}}, read), u"服务器出错了（302）"_s);
    EXPECT_EQ(sentenceAfter({401, {}, {}}, read), u"同步码里的密码不对"_s);
    EXPECT_EQ(sentenceAfter({0, {}, {}}, read), u"服务器出错了（0）"_s);
    for (const int status : {200, 412})
        EXPECT_EQ(sentenceAfter({status, {}, {}}, write), QString()) << status;
    EXPECT_EQ(sentenceAfter({404, {}, {}}, write), u"服务器出错了（404）"_s);
    for (const char *body : {"", "[]", "{\"words\":[{}]}", "{}x"})
        EXPECT_EQ(sentenceAfter({200, {}, body}, read), u"同步出错了：服务器上的单词本读不懂"_s);
}

} // namespace
