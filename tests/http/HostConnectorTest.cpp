#include "http/HostConnector.h"

#include "support/Await.h"

#include <QElapsedTimer>
#include <QTcpServer>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A port on which nobody takes a connection, nor refuses one: its queue is full.
class HungPort {
public:
    explicit HungPort(const char *address)
    {
        m_address.sin_family = AF_INET;
        ::inet_pton(AF_INET, address, &m_address.sin_addr);
        socklen_t size = sizeof m_address;
        ::bind(m_listener, reinterpret_cast<const sockaddr *>(&m_address), size);
        ::listen(m_listener, 0);
        ::getsockname(m_listener, reinterpret_cast<sockaddr *>(&m_address), &size);
        for (const int waiting : m_waiting)
            ::connect(waiting, reinterpret_cast<const sockaddr *>(&m_address), size);
    }
    ~HungPort()
    {
        for (const int descriptor : {m_listener, m_waiting[0], m_waiting[1]})
            ::close(descriptor);
    }
    Q_DISABLE_COPY_MOVE(HungPort)

    quint16 port() const { return ntohs(m_address.sin_port); }

private:
    static int newSocket(int flags = 0) { return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0); }

    sockaddr_in m_address{};
    const int m_listener = newSocket();
    const int m_waiting[2]{newSocket(SOCK_NONBLOCK), newSocket(SOCK_NONBLOCK)};
};

struct Attempt {
    Attempt()
    {
        QObject::connect(&connector, &HostConnector::connected, [this] { socket = connector.takeSocket(); });
        QObject::connect(&connector, &HostConnector::failed,
            [this](const TransportError &error) { failure = error.kind(); });
    }
    void run(const QList<QHostAddress> &addresses, quint16 port)
    {
        time.start();
        connector.connectTo(addresses, port);
        EXPECT_TRUE(waitUntil([this] { return socket || failure; }));
    }

    std::chrono::milliseconds taken() const { return std::chrono::milliseconds(time.elapsed()); }

    HostConnector connector{[this] {
        ++sockets;
        return std::make_unique<QTcpSocket>();
    }};
    int sockets = 0;
    QElapsedTimer time;
    std::unique_ptr<QTcpSocket> socket;
    std::optional<TransportError::Kind> failure;
};

const QHostAddress first(u"127.0.0.1"_s), second(u"127.0.0.2"_s), third(u"127.0.0.3"_s);

TEST(HostConnector, AHostThatHangsOnOneAddressIsReachedByTheNext)
{
    const HungPort hung("127.0.0.1");
    QTcpServer server;
    ASSERT_TRUE(server.listen(second, hung.port()));
    Attempt attempt;
    attempt.run({first, second, third}, hung.port());
    ASSERT_TRUE(attempt.socket);
    EXPECT_EQ(attempt.socket->peerAddress(), second);
    EXPECT_EQ(attempt.sockets, 2);
    EXPECT_GE(attempt.taken(), HostConnector::headStart - 20ms);
    EXPECT_LT(attempt.taken(), 10s);
}

TEST(HostConnector, ARefusalLeadsToTheNextAddressAtOnce)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(third));
    Attempt attempt;
    attempt.run({first, second, third}, server.serverPort());
    EXPECT_TRUE(attempt.socket && attempt.socket->peerAddress() == third);
    EXPECT_LT(attempt.taken(), HostConnector::headStart);

    Attempt refused;
    refused.run({first, second}, server.serverPort());
    EXPECT_EQ(refused.failure, TransportError::Kind::refused);
    EXPECT_EQ(refused.sockets, 2);
}

TEST(HostConnector, FindsAHostByItsName)
{
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    Attempt attempt, unknown, dropped;
    attempt.connector.connectTo(u"localhost"_s, server.serverPort());
    unknown.connector.connectTo(u"nowhere.invalid"_s, 80);
    EXPECT_TRUE(waitUntil([&] { return attempt.socket && unknown.failure; }));
    EXPECT_EQ(unknown.failure, TransportError::Kind::hostNotFound);
    dropped.connector.connectTo(u"localhost"_s, server.serverPort()); // ends while it is looked up
}

} // namespace
