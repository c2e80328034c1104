#include "ai/HttpExchange.h"

#include "ai/TransportError.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

namespace nimbrelle {

HttpExchange::HttpExchange(QNetworkAccessManager &network, const QNetworkRequest &request,
    const QByteArray &body, std::stop_token stop)
    : m_stop(std::move(stop)), m_reply(network.post(request, body))
{
    QObject::connect(m_reply, &QNetworkReply::readyRead, &m_context, [this] {
        collect();
        resume();
    });
    QObject::connect(m_reply, &QNetworkReply::finished, &m_context, [this] {
        collect();
        resume();
    });
    m_onStop.emplace(m_stop, Abort{this});
}

HttpExchange::~HttpExchange()
{
    m_onStop.reset();
    m_waiting = nullptr;
    m_context.disconnect();
    QObject::disconnect(m_reply, nullptr, &m_context, nullptr);
    // We may stand inside a signal of the reply, even inside its abort(), which must not run twice.
    if (m_reply->isRunning() && m_reply->isOpen())
        m_reply->abort();
    m_reply->deleteLater();
}

int HttpExchange::status() const
{
    return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool HttpExchange::hasNews() const
{
    return m_stop.stop_requested() || m_reply->isFinished() || !m_unread.isEmpty();
}

// At once, for a time-out closes the reply and drops what nobody read.
void HttpExchange::collect()
{
    if (m_reply->isOpen())
        m_unread.append(m_reply->readAll());
    m_hasBody = m_hasBody || !m_unread.isEmpty();
}

void HttpExchange::resume()
{
    if (m_waiting && hasNews())
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
    const QNetworkReply::NetworkError error = m_reply->error();
    if (!isTransportFailure(error))
        return;
    if (error == QNetworkReply::RemoteHostClosedError && m_cutOff == CutOff::isEnd && m_hasBody)
        return;
    // Nobody but the time limit cancels a reply that was not stopped.
    if (error == QNetworkReply::OperationCanceledError)
        throw TransportError(TransportError::Kind::timedOut);
    throw TransportError(TransportError::kindOf(error));
}

} // namespace nimbrelle
