#include "sync/SyncConnection.h"

#include "support/Printers.h"
#include "sync/Device.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class SyncConnectionTest : public testing::Test {
protected:
    SyncConnectionTest() { connection.disconnectFromServer(); }

    const QString code = u"nimbrelle://sync?server=https://home.example:8443&token=abcdefghijklmnop&pin="_s
        + QString(64, u'a');
    Device device;
    QStringList copied;
    SyncConnection connection{device.config(), device.sync(), device.clock, device.network.connect(),
        [this](const QString &text) { copied.append(text); }};
};

TEST_F(SyncConnectionTest, TakesNoTextThatIsNoCode)
{
    connection.connectTo({});
    EXPECT_EQ(connection.message(), std::nullopt);
    connection.connectTo(u"https://home.example"_s);
    EXPECT_EQ(connection.message(), u"这不是同步码。同步码以 nimbrelle://sync? 开头"_s);
    EXPECT_FALSE(connection.isConnecting());
    EXPECT_TRUE(device.network.requests.empty());
}

TEST_F(SyncConnectionTest, StoresNothingBeforeTheServerHasAnswered)
{
    const AppConfig before = device.config().config();
    connection.connectTo(code);
    connection.connectTo(code);
    EXPECT_TRUE(connection.isConnecting());
    ASSERT_EQ(device.network.requests.size(), 1U);
    EXPECT_EQ(device.network.waiting().path, u"/v1/ping"_s);
    device.network.answer({401, {}, {}});
    EXPECT_EQ(connection.message(), u"同步码里的密码不对"_s);
    EXPECT_FALSE(connection.isConnecting());
    EXPECT_EQ(device.config().config(), before);

    QSignalSpy connected(&connection, &SyncConnection::connected);
    connection.connectTo(u"同步码： "_s + code);
    EXPECT_EQ(connection.message(), std::nullopt);
    device.network.answer({200, {}, {}});
    EXPECT_EQ(connected.size(), 1);
    ASSERT_TRUE(connection.link());
    EXPECT_EQ(connection.link()->host(), u"home.example"_s);
    EXPECT_EQ(device.network.waiting().path, u"/v1/bundle"_s); // a round begins at once
    device.network.lose();

    connection.disconnectFromServer();
    EXPECT_EQ(connection.link(), std::nullopt);
    EXPECT_EQ(device.config().config(), before);
}

TEST_F(SyncConnectionTest, SaysThatTheCodeIsCopiedForAWhile)
{
    connection.copyCode();
    EXPECT_TRUE(copied.isEmpty());
    connection.connectTo(code);
    device.network.answer({200, {}, {}});
    connection.copyCode();
    EXPECT_THAT(copied, ElementsAre(connection.link()->text()));
    device.clock.advance(1500ms);
    connection.copyCode();
    device.clock.advance(1500ms);
    EXPECT_TRUE(connection.isCopied()); // counted from the second time
    device.clock.advance(500ms);
    EXPECT_FALSE(connection.isCopied());
    device.network.lose();
}

} // namespace
