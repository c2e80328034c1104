#include "ai/ProviderConnections.h"

#include "frame/Clock.h"

namespace nimbrelle {

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

} // namespace

ProviderConnection ProviderConnections::take(const QUrl &address)
{
    m_lastServer = serverOf(address);
    m_dropping.cancel();
    ProviderConnection prepared = std::exchange(m_prepared.connection, nullptr);
    const bool isInTime =
        prepared && m_prepared.server == m_lastServer && isWithin(m_clock.now(), m_prepared.at, goodFor);
    m_prepared.wasUsed = m_prepared.wasUsed || isInTime;
    // After a failure the exchange tries by itself, and tells what is wrong.
    const bool isGood = isInTime && prepared->isUsable();
    return isGood ? std::move(prepared) : std::make_unique<HttpConnection>(m_lastServer);
}

void ProviderConnections::prepare(const QUrl &address)
{
    const QUrl server = serverOf(address);
    if (!mayPrepare(server))
        return;
    m_prepared = {
        .server = server, .at = m_clock.now(), .connection = std::make_unique<HttpConnection>(server)};
    m_prepared.connection->begin();
    dropWhenOld(m_dropping.renew());
}

// One that is still good is one for which no exchange came yet.
bool ProviderConnections::mayPrepare(const QUrl &server) const
{
    return server == m_lastServer
        && (m_prepared.wasUsed || !isWithin(m_clock.now(), m_prepared.at, pauseAfterUnused));
}

QCoro::Task<> ProviderConnections::dropWhenOld(std::stop_token stop)
{
    co_await m_clock.sleep(goodFor, stop);
    if (!stop.stop_requested())
        m_prepared.connection.reset();
}

} // namespace nimbrelle
