#include "ai/ProviderConnections.h"

#include "ai/DeepSeekClient.h"
#include "http/TransportError.h"
#include "support/Await.h"
#include "support/ManualClock.h"
#include "support/ScriptedServer.h"
#include "support/TestCertificates.h"
#include "support/TlsListener.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Script = ScriptedServer::Script;

namespace {

constexpr char reply[] =
    R"({"choices":[{"message":{"content":"{\"headword\":\"run\",\"meaning_zh\":\"跑\"}"}}]})";

qsizetype entriesOf(const QString &directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}
qsizetype descriptors()
{
    return entriesOf(u"/proc/self/fd"_s);
}
qsizetype threads()
{
    return entriesOf(u"/proc/self/task"_s);
}

class ProviderConnectionsTest : public testing::Test {
protected:
    ProviderConnectionsTest()
    {
        use(server, u"http"_s);
        server.handle([](const auto &) { return Script::response(200, reply); });
        encrypted.handle([](const auto &) { return Script::response(200, reply); });
    }

    void use(const ScriptedServer &other, const QString &scheme)
    {
        config.apiKey = u"sk-1"_s;
        config.baseURL = scheme + u"://127.0.0.1:"_s + QString::number(other.port());
    }
    void trustTestCertificate()
    {
        QSslConfiguration trusting = before;
        trusting.addCaCertificate(QSslCertificate(QByteArray(TestCertificates::validCertificate)));
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    void TearDown() override { QSslConfiguration::setDefaultConfiguration(before); }

    DeepSeekClient client() { return DeepSeekClient(config, connections); }
    void prepare() { client().prepare(); }
    QString explain()
    {
        try {
            return await(client().explain(u"ran"_s, std::nullopt)).headword;
        } catch (const TransportError &failure) {
            return failure.text();
        }
    }
    static QString textOf(TransportError::Kind kind) { return TransportError(kind).text(); }
    /// Whether an exchange that comes now gets a connection that was begun before.
    bool takesPrepared() { return connections.take(QUrl(config.baseURL))->isBegun(); }
    /// Its descriptor is let go at once, and at the latest after eight seconds, which don't pass here.
    void prepareAndSeeItFail()
    {
        const auto open = descriptors();
        prepare();
        EXPECT_GT(descriptors(), open);
        EXPECT_TRUE(waitUntil([open] { return descriptors() <= open; }));
    }
    bool isPreparedAfter(std::chrono::milliseconds wait)
    {
        clock.advance(wait);
        prepare();
        return takesPrepared();
    }

    const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
    ScriptedServer server;
    ScriptedServer encrypted{tlsListener(TestCertificates::validCertificate, TestCertificates::validKey)};
    AppConfig config;
    ManualClock clock;
    ProviderConnections connections{clock};
};

TEST_F(ProviderConnectionsTest, ThePreparedConnectionCarriesTheNextExchangeAndNothingBefore)
{
    trustTestCertificate();
    for (ScriptedServer *const one : {&server, &encrypted}) {
        use(*one, one == &server ? u"http"_s : u"https"_s);
        SCOPED_TRACE(config.baseURL.toStdString());
        EXPECT_EQ(explain(), u"run"_s);
        const qint64 bytes = one->bytesReceived();
        prepare();
        EXPECT_TRUE(waitUntil([&] { return one->connections() == 2; }));
        EXPECT_EQ(one->bytesReceived(), bytes);
        EXPECT_EQ(explain(), u"run"_s);
        EXPECT_EQ(one->connections(), 2);

        prepare(); // and while it is still being made
        EXPECT_EQ(explain(), u"run"_s);
        EXPECT_EQ(one->connections(), 3);
        EXPECT_EQ(one->requests().size(), 3);
    }
}

TEST_F(ProviderConnectionsTest, APreparedConnectionThatTheServerGaveUpCostsNothing)
{
    explain();
    for (const auto goodbye : {ScriptedServer::Goodbye::close, ScriptedServer::Goodbye::reset}) {
        ASSERT_TRUE(waitUntil([this] { return server.openConnections() == 0; }));
        const auto sent = server.requests().size();
        const auto made = server.connections();
        prepare();
        ASSERT_TRUE(waitUntil([&] { return server.openConnections() == 1; }));
        const auto open = descriptors();
        server.endConnections(goodbye);
        // Both ends.
        ASSERT_TRUE(waitUntil([&] { return descriptors() <= open - 2; }));
        EXPECT_EQ(explain(), u"run"_s);
        EXPECT_EQ(server.requests().size(), sent + 1);
        EXPECT_EQ(server.connections(), made + 2);
    }
}

TEST_F(ProviderConnectionsTest, PreparesOnlyForTheServerOfTheLastExchange)
{
    EXPECT_FALSE(isPreparedAfter(0s)) << "not before the first exchange";
    EXPECT_TRUE(isPreparedAfter(0s));
    use(encrypted, u"https"_s);
    EXPECT_FALSE(isPreparedAfter(0s));
    EXPECT_TRUE(isPreparedAfter(0s));
    prepare();
    use(server, u"http"_s);
    EXPECT_FALSE(takesPrepared()) << "it leads elsewhere";
    config.apiKey = u" "_s;
    clock.advance(60s);
    EXPECT_FALSE(isPreparedAfter(0s)) << "nothing can be asked without a key";
}

TEST_F(ProviderConnectionsTest, APreparedConnectionIsGoodForEightSeconds)
{
    explain();
    prepare();
    clock.advance(7999ms);
    EXPECT_TRUE(takesPrepared());
    prepare();
    clock.set(clock.now() + 1h); // a suspend: no timer ran
    EXPECT_FALSE(takesPrepared());
    prepare();
    clock.advance(8s);
    EXPECT_TRUE(waitUntil([this] { return server.openConnections() == 0; })) << "it goes by itself";
    EXPECT_FALSE(takesPrepared());
    clock.set(clock.now() - 24h); // and a clock that was set back stops nothing
    EXPECT_TRUE(isPreparedAfter(0s));
}

TEST_F(ProviderConnectionsTest, AfterOneThatNobodyUsedThereIsAMinutesPause)
{
    explain();
    EXPECT_TRUE(isPreparedAfter(0s));
    EXPECT_TRUE(isPreparedAfter(0s)) << "a look-up came of the one before";
    prepare();
    clock.advance(10s);
    EXPECT_EQ(explain(), u"run"_s) << "too late for it";
    EXPECT_FALSE(isPreparedAfter(49s));
    EXPECT_TRUE(isPreparedAfter(1s));
}

TEST_F(ProviderConnectionsTest, TheExchangeTellsWhatWentWrong)
{
    using Kind = TransportError::Kind;
    ScriptedServer expired(tlsListener(TestCertificates::expiredCertificate, TestCertificates::expiredKey));
    use(expired, u"https"_s);
    EXPECT_EQ(explain(), textOf(Kind::tls));
    prepare();
    EXPECT_EQ(explain(), textOf(Kind::tls)) << "while the prepared one fails";
    clock.advance(60s);
    prepareAndSeeItFail();
    EXPECT_EQ(explain(), textOf(Kind::tls));
    EXPECT_TRUE(expired.requests().isEmpty());

    {
        const ScriptedServer gone;
        use(gone, u"http"_s);
    }
    EXPECT_EQ(explain(), textOf(Kind::refused));
    prepare();
    EXPECT_EQ(explain(), textOf(Kind::refused));
    clock.advance(60s);
    prepareAndSeeItFail();
    EXPECT_EQ(explain(), textOf(Kind::refused));
}

TEST_F(ProviderConnectionsTest, PreparesByWayOfTheProxyForTheAddress)
{
    ScriptedServer proxy;
    proxy.handle([](const auto &) { return Script::response(502, ""); });
    config.baseURL = u"https://provider.invalid"_s;
    qputenv("https_proxy", proxy.address().toUtf8());
    explain();
    EXPECT_EQ(proxy.requests().size(), 1);
    prepare();
    EXPECT_TRUE(waitUntil([&] { return proxy.requests().size() == 2; }));
    qunsetenv("https_proxy");
    EXPECT_EQ(proxy.requests().last().target, "provider.invalid:443");
}

TEST_F(ProviderConnectionsTest, NothingGrowsOverManyExchanges)
{
    explain();
    ASSERT_TRUE(waitUntil([this] { return server.openConnections() == 0; }));
    const auto descriptorsBefore = descriptors(), threadsBefore = threads();
    for (int i = 0; i < 50; ++i) {
        prepare();
        EXPECT_EQ(explain(), u"run"_s);
    }
    EXPECT_LE(threads(), threadsBefore);
    EXPECT_TRUE(waitUntil([&] { return descriptors() <= descriptorsBefore; })) << descriptors();
}

} // namespace
