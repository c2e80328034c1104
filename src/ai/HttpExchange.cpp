#include "ai/HttpExchange.h"

#include "ai/AIError.h"
#include "ai/ReplyLimits.h"
#include "ai/TransportError.h"

#include <QIODevice>
#include <QNetworkRequest>

#include <algorithm>

namespace nimbrelle {

/// A body that is read once. When a server closes the connection without an answer, the network layer sends
/// the request again by itself, and the user would pay for two answers; so the second one finds no body and
/// fails. (Refusing to be rewound would be simpler, but fails a redirect, for which the layer rewinds and
/// sends nothing.)
class OneTimeBody final : public QIODevice {
public:
    explicit OneTimeBody(const QByteArray &bytes) : m_bytes(bytes) { open(ReadOnly | Unbuffered); }

    bool wasAskedTwice() const { return m_wasAskedTwice; }

    qint64 size() const override { return m_bytes.size(); }
    bool atEnd() const override { return m_read == m_bytes.size(); }
    bool reset() override
    {
        m_isSpent = m_isSpent || m_read > 0;
        return true;
    }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        if (m_isSpent) {
            m_wasAskedTwice = true;
            return -1;
        }
        const qint64 count = std::min<qint64>(most, m_bytes.size() - m_read);
        std::copy_n(m_bytes.constData() + m_read, count, data);
        m_read += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_read = 0;
    bool m_isSpent = false;
    bool m_wasAskedTwice = false;
};

namespace {

QNetworkReply *post(QNetworkAccessManager &network, const QNetworkRequest &request, OneTimeBody *body)
{
    QNetworkReply *reply = network.post(request, body);
    body->setParent(reply);
    return reply;
}

} // namespace

HttpExchange::HttpExchange(ProviderConnection connection, const QNetworkRequest &request,
    const QByteArray &body, std::chrono::milliseconds limit, std::stop_token stop)
    : m_connection(std::move(connection))
    , m_stop(std::move(stop))
    , m_body(new OneTimeBody(body))
    , m_reply(post(*m_connection, request, m_body))
{
    QObject::connect(m_reply, &QNetworkReply::readyRead, &m_context, [this] {
        collect();
        resume();
    });
    QObject::connect(m_reply, &QNetworkReply::finished, &m_context, [this] {
        collect();
        resume();
    });
    // An aborted reply counts as timed out.
    QObject::connect(&m_limit, &QTimer::timeout, m_reply, &QNetworkReply::abort);
    m_limit.setSingleShot(true);
    m_limit.start(limit);
    m_onStop.emplace(m_stop, Abort{this});
}

HttpExchange::~HttpExchange()
{
    m_onStop.reset();
    QObject::disconnect(m_reply, nullptr, &m_context, nullptr);
    // Its deletion closes the connection. Later, for we may be called from one of its signals.
    m_reply->deleteLater();
}

int HttpExchange::status() const
{
    return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool HttpExchange::isReady() const
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
    if (m_waiting && isReady())
        std::exchange(m_waiting, nullptr).resume(); // may destroy us
}

void HttpExchange::checkAnswered()
{
    if (m_unread.isEmpty() && (m_stop.stop_requested() || status() == 0))
        throwUnlessEnded();
    if (hasOversizedHeaders(*m_reply))
        throw AIError(AIError::Kind::badResponse);
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
    const std::optional<TransportError> failure = TransportError::of(*m_reply);
    if (!failure)
        return;
    if (m_body->wasAskedTwice())
        throw TransportError(TransportError::Kind::lost);
    if (failure->kind() == TransportError::Kind::lost && m_cutOff == CutOff::isEnd && m_hasBody)
        return;
    throw *failure;
}

} // namespace nimbrelle
