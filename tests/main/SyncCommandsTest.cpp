#include "main/SyncCommands.h"

#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "support/Printers.h"
#include "sync/Device.h"

#include <QCoreApplication>
#include <QTextStream>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

struct Ended {
    int code = -1;
    QString output;

    bool operator==(const Ended &) const = default;
};

void PrintTo(const Ended &ended, std::ostream *out)
{
    *out << ended.code << " with " << ended.output.toStdString();
}

/// Runs a command whose requests get `responses` in turn.
template <class Command>
Ended run(FakeNetwork &network, const QList<SyncResponse> &responses, Command command)
{
    Ended ended;
    QTextStream out(&ended.output);
    const auto flow = [&]() -> QCoro::Task<> { ended.code = co_await command(&out); };
    const auto task = flow();
    for (const SyncResponse &response : responses)
        network.answer(response);
    EXPECT_FALSE(network.isWaiting());
    return ended;
}

Ended connected(Device &device, const QString &code, const QList<SyncResponse> &responses)
{
    return run(device.network, responses,
        [&](QTextStream *out) { return connectSync(code, &device.config(), device.network.connect(), out); });
}

Ended synced(Device &device, const QList<SyncResponse> &responses)
{
    return run(device.network, responses,
        [&](QTextStream *out) { return syncNow(&device.sync(), &device.store(), out); });
}

const QString code =
    u"nimbrelle://sync?server=https://home.example:8443/x/&token=abcdefghijklmnop&pin="_s + QString(64, u'B');

TEST(SyncCommands, ConnectStoresTheLinkOnceTheServerHasAnswered)
{
    Device device;
    EXPECT_EQ(
        connected(device, code, {{.status = 200}}), (Ended{.code = 0, .output = u"已连接 home.example\n"_s}));
    EXPECT_EQ(device.config().config().syncServer, u"https://home.example:8443/x"_s);
    EXPECT_EQ(device.config().config().syncToken, u"abcdefghijklmnop"_s);
    EXPECT_EQ(device.config().config().syncPin, QString(64, u'b'));
}

TEST(SyncCommands, ConnectTakesTheCodeFromStandardInputWhenAsked)
{
    QString given = u"同步码："_s + code + u"\nsecond line"_s;
    QTextStream in(&given);
    EXPECT_EQ(givenCode(code, in), code);
    EXPECT_EQ(givenCode(u"-"_s, in), u"同步码："_s + code);
    QTextStream nothing(QByteArray{});
    EXPECT_EQ(givenCode(u"-"_s, nothing), QString());
}

TEST(SyncCommands, ConnectStoresNothingOnFailure)
{
    Device device;
    const AppConfig before = device.config().config();
    EXPECT_EQ(connected(device, u"nimbrelle"_s, {}), (Ended{.code = 1, .output = u"同步码格式不对\n"_s}));
    EXPECT_EQ(device.network.sessions, 0);
    EXPECT_EQ(
        connected(device, code, {{.status = 401}}), (Ended{.code = 1, .output = u"同步码里的密码不对\n"_s}));
    EXPECT_EQ(device.config().config(), before);
}

TEST(SyncCommands, SyncNowTellsTheWordsOrBothTextsOfTheFailure)
{
    Device device;
    Explanation explanation;
    explanation.headword = u"run"_s;
    device.store().save(explanation, {});
    EXPECT_EQ(synced(device, {{.status = 404}, {.status = 200, .eTag = "\"1\""}}),
        (Ended{.code = 0, .output = u"同步好了：1 个词\n"_s}));
    EXPECT_EQ(synced(device, {{.status = 503}}),
        (Ended{.code = 1, .output = u"同步失败：服务器出错了（503）\nhttp(503)\n"_s}));
}

// One that reads before a change must not count as the round that was asked for behind it.
TEST(SyncCommands, SyncNowWaitsForARoundUnderWayAndMakesItsOwn)
{
    Device device;
    MemoryServer server;
    const auto earlier = device.startSync();
    device.network.answer(server.answer(device.network.waiting()));
    Explanation explanation;
    explanation.headword = u"run"_s;
    device.store().save(explanation, {});
    Ended ended;
    QTextStream out(&ended.output);
    const auto flow = [&]() -> QCoro::Task<> {
        ended.code = co_await syncNow(&device.sync(), &device.store(), &out);
    };
    const auto task = flow();
    device.network.serve(server);
    EXPECT_EQ(*earlier, true);
    EXPECT_FALSE(server.document.contains("\"run\""));
    QCoreApplication::processEvents();
    device.network.serve(server);
    EXPECT_EQ(ended, (Ended{.code = 0, .output = u"同步好了：1 个词\n"_s}));
    EXPECT_TRUE(server.document.contains("\"run\""));
}

} // namespace
