#include "sync/PinnedTransport.h"

#include "support/Printers.h"
#include "support/TestCertificates.h"
#include "sync/SyncError.h"
#include "sync/TlsServer.h"

#include <QCoro/QCoroTask>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTimer>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace TestCertificates;

namespace {

const QString certificateSentence = u"服务器的证书对不上，可能连到了别的地方"_s;
const QString connectionSentence = u"连不上同步服务器（没网，或者服务器停了）"_s;

SyncLink linkTo(const TlsServer &server)
{
    return {server.address(), u"secret-0123456789"_s, server.pin()};
}

SyncLink withWrongPin(SyncLink link)
{
    link.pin[0] = link.pin[0] == u'0' ? u'1' : u'0';
    return link;
}

struct Outcome {
    SyncResponse response;
    QString failure; ///< the user's sentence; empty when there was a response
};

QCoro::Task<Outcome> outcomeOf(SyncTransport *transport, SyncRequest request, std::stop_token stop)
{
    Outcome outcome;
    try {
        outcome.response = co_await transport->send(std::move(request), stop);
    } catch (const Cancelled &) {
        outcome.failure = u"cancelled"_s;
    } catch (const std::exception &error) {
        outcome.failure = describe(error);
    }
    co_return outcome;
}

SyncRequest ping()
{
    SyncRequest request;
    request.path = u"/v1/ping"_s;
    return request;
}

Outcome send(const SyncLink &link, const SyncRequest &request = ping())
{
    const auto transport = PinnedTransport::open(link);
    return QCoro::waitFor(outcomeOf(transport.get(), request, {}));
}

// The system as one that trusts the server's certificate, for the length of a test.
class TrustOf {
public:
    explicit TrustOf(const char *certificate)
    {
        QSslConfiguration trusting = m_before;
        trusting.addCaCertificate(QSslCertificate(QByteArray(certificate)));
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    ~TrustOf() { QSslConfiguration::setDefaultConfiguration(m_before); }
    TrustOf(const TrustOf &) = delete;
    TrustOf &operator=(const TrustOf &) = delete;

private:
    QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
};

TEST(PinnedTransport, NoByteReachesAServerWithAnotherCertificate)
{
    for (const QSsl::SslProtocol protocol : {QSsl::TlsV1_2, QSsl::TlsV1_3}) {
        TlsServer server(validCertificate, validKey, protocol);
        EXPECT_EQ(send(withWrongPin(linkTo(server))).failure, certificateSentence);
        const TrustOf trust(validCertificate);
        SyncLink named = withWrongPin(linkTo(server));
        named.server = server.address(u"localhost"_s);
        EXPECT_EQ(send(named).failure, certificateSentence);
        EXPECT_EQ(server.connections, 2);
        EXPECT_EQ(server.received, QByteArray());
        // The same server hears the right pin, so it was the pin that kept it deaf.
        EXPECT_EQ(send(linkTo(server)).response.status, 200);
        EXPECT_TRUE(server.received.contains("Bearer secret-0123456789"));
    }
}

TEST(PinnedTransport, AnExpiredCertificateOfAnotherNameIsGoodWithItsPin)
{
    TlsServer server(expiredCertificate, expiredKey);
    EXPECT_EQ(send(linkTo(server)).response.status, 200);
}

TEST(PinnedTransport, SendsWhatTheProtocolAsksFor)
{
    TlsServer server(validCertificate, validKey);
    server.answer = "HTTP/1.1 412 Precondition Failed\r\nETag: W/\"8\"\r\nContent-Length: 2\r\n\r\nno";
    SyncLink link = linkTo(server);
    link.server += u"/home//a%2Fb/"_s;
    SyncRequest request;
    request.method = SyncRequest::Method::put;
    request.path = u"/v1/bundle"_s;
    request.ifMatch = "\"7\"";
    request.body = "{\"words\":[]}";
    const Outcome outcome = send(link, request);
    EXPECT_EQ(outcome.response.status, 412);
    EXPECT_EQ(outcome.response.eTag, "W/\"8\"");
    EXPECT_EQ(outcome.response.body, "no");
    EXPECT_TRUE(server.received.startsWith("PUT /home//a%2Fb//v1/bundle HTTP/1.1\r\n"))
        << server.received.constData();
    const QByteArray received = server.received.toLower(); // names of headers have no case
    for (const char *part : {"\r\nif-match: \"7\"\r\n", "\r\ncontent-type: application/json\r\n",
             "\r\nauthorization: bearer secret-0123456789\r\n", "\r\nuser-agent: nimbrelle\r\n",
             "\r\n\r\n{\"words\":[]}"})
        EXPECT_TRUE(received.contains(part)) << received.constData();
    EXPECT_FALSE(received.contains("if-none-match"));
    EXPECT_FALSE(received.contains("cookie"));
}

TEST(PinnedTransport, DoesNotFollowRedirects)
{
    TlsServer elsewhere(validCertificate, validKey), server(validCertificate, validKey);
    for (const char *status : {"301", "302", "307", "308"}) {
        server.answer = QByteArray("HTTP/1.1 ") + status + " Moved\r\nSet-Cookie: a=b\r\nLocation: "
            + elsewhere.address().toLatin1() + "/v1/ping\r\nContent-Length: 0\r\n\r\n";
        EXPECT_EQ(send(linkTo(server)).response.status, QByteArray(status).toInt());
    }
    EXPECT_EQ(elsewhere.connections, 0);
    EXPECT_EQ(server.received.count("GET "), 4);
}

TEST(PinnedTransport, CarriesSeveralRequestsAndKeepsNoCookies)
{
    TlsServer server(validCertificate, validKey);
    server.answer = "HTTP/1.1 200 OK\r\nSet-Cookie: a=b\r\nCache-Control: max-age=9999\r\nETag: \"1\"\r\n"
                    "Content-Length: 2\r\n\r\n{}";
    const auto transport = PinnedTransport::open(linkTo(server));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(QCoro::waitFor(outcomeOf(transport.get(), ping(), {})).response.body, "{}");
    EXPECT_EQ(server.received.count("GET "), 3);
    EXPECT_FALSE(server.received.contains("Cookie"));
}

TEST(PinnedTransport, AnAnswerCutShortIsNoAnswer)
{
    TlsServer server(validCertificate, validKey);
    server.closesAfterAnswer = true;
    for (const char *answer :
        {"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{}", "garbage\r\n\r\n", "", "HTTP/1.1 2"}) {
        server.answer = answer;
        EXPECT_EQ(send(linkTo(server)).failure, connectionSentence) << answer;
    }
}

TEST(PinnedTransport, NothingListeningIsAConnectionFailure)
{
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    SyncLink link{u"https://127.0.0.1:%1"_s.arg(plain.serverPort()), QString(16, u't'), QString(64, u'a')};
    QObject::connect(&plain, &QTcpServer::newConnection, &plain, [&plain] {
        QTcpSocket *socket = plain.nextPendingConnection();
        socket->write("HTTP/1.1 400 Bad Request\r\n\r\n");
        socket->disconnectFromHost();
    });
    EXPECT_EQ(send(link).failure, connectionSentence);
    plain.close();
    EXPECT_EQ(send(link).failure, connectionSentence);
}

TEST(PinnedTransport, WaitsNoLongerThanItsLimits)
{
    TlsServer server(validCertificate, validKey);
    server.answer = {};
    for (const PinnedTransport::Limits &limits :
        {PinnedTransport::Limits{.silence = std::chrono::milliseconds{300}},
            PinnedTransport::Limits{.exchange = std::chrono::milliseconds{300}}}) {
        PinnedTransport transport(linkTo(server), limits);
        EXPECT_EQ(QCoro::waitFor(outcomeOf(&transport, ping(), {})).failure, connectionSentence);
    }
}

TEST(PinnedTransport, ADocumentWithoutEndCannotBeRead)
{
    TlsServer server(validCertificate, validKey);
    PinnedTransport transport(linkTo(server), {.body = 1000});
    const auto failureOf = [&](const QByteArray &answer) {
        server.answer = "HTTP/1.1 200 OK\r\n" + answer;
        return QCoro::waitFor(outcomeOf(&transport, ping(), {})).failure;
    };
    const QString unreadable = u"同步出错了：服务器上的单词本读不懂"_s;
    EXPECT_EQ(failureOf("Connection: close\r\n\r\n" + QByteArray(1001, ' ')), unreadable);
    EXPECT_EQ(failureOf("Content-Length: 2\r\nX: " + QByteArray(70'000, 'x') + "\r\n\r\n{}"), unreadable);
    EXPECT_EQ(failureOf("Content-Length: 1000\r\n\r\n" + QByteArray(1000, ' ')), QString());
}

TEST(PinnedTransport, RefusesWhatWouldGiveTheTokenAway)
{
    TlsServer server(validCertificate, validKey);
    SyncLink link = linkTo(server);
    link.token += u"\r\nX-Injected: 1"_s;
    EXPECT_EQ(send(link).failure, u"同步码里的密码不对"_s);
    link = linkTo(server);
    link.server.replace(u"https"_s, u"http"_s);
    EXPECT_EQ(send(link).failure, certificateSentence);
    EXPECT_EQ(server.connections, 0);
}

TEST(PinnedTransport, StopEndsTheWaitAtOnce)
{
    TlsServer server(validCertificate, validKey);
    server.answer = {};
    std::stop_source stop;
    const auto transport = PinnedTransport::open(linkTo(server));
    QTimer::singleShot(50, &server, [&stop] { stop.request_stop(); });
    EXPECT_EQ(QCoro::waitFor(outcomeOf(transport.get(), ping(), stop.get_token())).failure, u"cancelled"_s);
    EXPECT_EQ(QCoro::waitFor(outcomeOf(transport.get(), ping(), stop.get_token())).failure, u"cancelled"_s);
}

} // namespace
