#include "ai/ProviderConnections.h"

#include "frame/Clock.h"

#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto goodFor = 8s; // servers give up a silent connection after 10 s at the earliest
constexpr auto pauseAfterUnused = 60s;

// By the clock on the wall, which goes on in a suspend. A clock that was set back says nothing.
bool isWithin(Timestamp now, Timestamp from, std::chrono::seconds limit)
{
    return now >= from && now - from < limit;
}

QUrl serverOf(const QUrl &address)
{
    return address.adjusted(
        QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

/// The proxies for `address`. A manager that only connects asks for them with a scheme of its own, to which
/// the proxy that the user set for https does not apply.
class ProxiesOf final : public QNetworkProxyFactory {
public:
    explicit ProxiesOf(const QUrl &address) : m_address(address) { }

    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &) override
    {
        return proxyForQuery(QNetworkProxyQuery(m_address));
    }

private:
    const QUrl m_address;
};

} // namespace

ProviderConnection ProviderConnections::newConnection()
{
    return ProviderConnection(new QNetworkAccessManager(&m_managers));
}

ProviderConnection ProviderConnections::take(const QUrl &address)
{
    m_lastServer = serverOf(address);
    m_dropping.cancel();
    ProviderConnection prepared = std::exchange(m_prepared.connection, nullptr);
    if (!prepared || m_prepared.server != m_lastServer || !isWithin(m_clock.now(), m_prepared.at, goodFor))
        return newConnection();
    m_prepared.wasUsed = true;
    return prepared;
}

void ProviderConnections::prepare(const QUrl &address)
{
    const QUrl server = serverOf(address);
    if (!mayPrepare(server))
        return;
    m_prepared = {.server = server, .at = m_clock.now(), .connection = newConnection()};
    connectTo(server);
    dropWhenOld(m_dropping.renew());
}

// One that is still good is one for which no exchange came yet.
bool ProviderConnections::mayPrepare(const QUrl &server) const
{
    return server == m_lastServer
        && (m_prepared.wasUsed || !isWithin(m_clock.now(), m_prepared.at, pauseAfterUnused));
}

// As QNetworkAccessManager::connectToHost() does it, which leaves no say in what else is set: the layer only
// knows the connection again as that of the exchange when both are for the same protocol and proxy.
void ProviderConnections::connectTo(const QUrl &server)
{
    QUrl address = server;
    address.setScheme(u"preconnect-"_s + server.scheme());
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    m_prepared.connection->setProxyFactory(new ProxiesOf(server));
    const QNetworkReply *reply = m_prepared.connection->get(request);
    QObject::connect(reply, &QNetworkReply::errorOccurred, &m_managers, [this, reply] {
        if (reply->manager() == m_prepared.connection.get())
            m_prepared.connection.reset(); // the exchange tries by itself, and tells what is wrong
    });
}

QCoro::Task<> ProviderConnections::dropWhenOld(std::stop_token stop)
{
    co_await m_clock.sleep(goodFor, stop);
    if (!stop.stop_requested())
        m_prepared.connection.reset();
}

} // namespace nimbrelle
