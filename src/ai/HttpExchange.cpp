#include "ai/HttpExchange.h"

#include "ai/AIError.h"

namespace nimbrelle {

HttpExchange::HttpExchange(
    ProviderConnection connection, const HttpRequest &request, Limits limits, std::stop_token stop)
    : m_connection(std::move(connection)), m_stop(std::move(stop))
{
    HttpConnection *const sender = m_connection.get();
    QObject::connect(sender, &HttpConnection::readyRead, sender, [this] { collect(); });
    QObject::connect(sender, &HttpConnection::finished, sender, [this] { collect(); });
    // An aborted connection counts as timed out.
    QObject::connect(&m_limit, &QTimer::timeout, sender, &HttpConnection::abort);
    m_limit.setSingleShot(true);
    m_limit.start(limits.whole);
    sender->send(request, limits.silence);
    m_onStop.emplace(m_stop, Abort{.connection = sender});
}

HttpExchange::~HttpExchange()
{
    m_onStop.reset();
}

bool HttpExchange::isReady() const
{
    return m_stop.stop_requested() || m_connection->isFinished() || !m_unread.isEmpty();
}

void HttpExchange::collect()
{
    m_unread.append(m_connection->takeBody());
    m_hasBody = m_hasBody || !m_unread.isEmpty();
    if (m_waiting && isReady())
        std::exchange(m_waiting, nullptr).resume(); // may destroy us
}

void HttpExchange::checkAnswered()
{
    if (m_unread.isEmpty() && (m_stop.stop_requested() || status() == 0))
        throwUnlessEnded();
}

QByteArray HttpExchange::takeBytes()
{
    if (m_stop.stop_requested() || m_unread.isEmpty())
        throwUnlessEnded();
    return std::exchange(m_unread, {});
}

void HttpExchange::throwUnlessEnded() const
{
    if (m_stop.stop_requested())
        throw Cancelled();
    if (m_connection->hasOversizedHead())
        throw AIError(AIError::Kind::badResponse);
    const std::optional<TransportError> &failure = m_connection->failure();
    const bool isCutOff = failure && failure->kind() == TransportError::Kind::lost;
    if (failure && !(isCutOff && m_cutOff == CutOff::isEnd && m_hasBody))
        throw TransportError(*failure);
}

} // namespace nimbrelle
