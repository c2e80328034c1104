#include "sync/PinnedTransport.h"

#include "sync/SyncError.h"

#include <QCoro/QCoroSignal>
#include <QCryptographicHash>
#include <QSslSocket>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

// With no trusted authority at all the handshake always stops to ask us. Sessions are not resumed, for a
// resumed one shows no certificate.
QSslConfiguration tlsConfiguration()
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({});
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setSslOption(QSsl::SslOptionDisableSessionTickets, true);
    configuration.setSslOption(QSsl::SslOptionDisableSessionSharing, true);
    return configuration;
}

// A line break in it would let a sync code write headers of its own.
void refuseUnsendable(const QString &token)
{
    const bool hasControl = std::any_of(
        token.cbegin(), token.cend(), [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7f; });
    if (hasControl)
        throw SyncError::http(401);
}

/// The body of the answer, as far as it came. Once it has more than it may, the connection is ended.
class Body {
public:
    Body(HttpConnection &connection, qint64 limit) : m_connection(connection), m_limit(limit)
    {
        QObject::connect(&connection, &HttpConnection::readyRead, &connection, [this] { collect(); });
    }

    QByteArray take()
    {
        collect();
        return std::move(m_bytes);
    }
    bool isTooLong() const { return m_bytes.size() > m_limit; }

private:
    void collect()
    {
        m_bytes.append(m_connection.takeBody());
        if (isTooLong())
            m_connection.abort();
    }

    HttpConnection &m_connection;
    const qint64 m_limit;
    QByteArray m_bytes;
};

} // namespace

std::unique_ptr<SyncTransport> PinnedTransport::open(const SyncLink &link)
{
    return std::make_unique<PinnedTransport>(link);
}

QCoro::Task<SyncResponse> PinnedTransport::send(SyncRequest request, std::stop_token stop)
{
    refuseUnsendable(m_link.token);
    const HttpRequest sent = httpRequest(request);
    HttpConnection connection(sent.url, trust());
    Body body(connection, m_limits.body);
    QTimer::singleShot(m_limits.exchange, &connection, &HttpConnection::abort);
    connection.send(sent, m_limits.silence);
    const std::stop_callback abort(stop, [&connection] { connection.abort(); });
    if (!connection.isFinished())
        co_await qCoro(&connection, &HttpConnection::finished);
    if (stop.stop_requested())
        throw Cancelled();
    SyncResponse response{
        .status = connection.status(), .eTag = connection.header("etag"), .body = body.take()};
    if (connection.hasOversizedHead() || response.body.size() > m_limits.body)
        throw unreadableBundle();
    if (connection.failure())
        throw TransportError(*connection.failure());
    co_return response;
}

HttpRequest PinnedTransport::httpRequest(const SyncRequest &request) const
{
    const QUrl url(m_link.server + request.path, QUrl::StrictMode);
    if (url.scheme() != u"https"_s)
        throw TransportError(TransportError::Kind::certificate, u"not https"_s);
    const bool isPut = request.method == SyncRequest::Method::put;
    HttpRequest result{.method = isPut ? "PUT" : "GET",
        .url = url,
        .headers = {{"User-Agent", "Nimbrelle"}, {"Accept-Language", "zh-CN"},
            {"Authorization", "Bearer " + m_link.token.toUtf8()}},
        .body = request.body};
    if (request.ifNoneMatch)
        result.headers.emplaceBack("If-None-Match", *request.ifNoneMatch);
    if (request.ifMatch)
        result.headers.emplaceBack("If-Match", *request.ifMatch);
    if (isPut)
        result.headers.emplaceBack("Content-Type", "application/json");
    return result;
}

TlsTrust PinnedTransport::trust() const
{
    const auto hasPin = [pin = m_link.pin.toLatin1()](const QSslCertificate &leaf) {
        return !leaf.isNull() && leaf.digest(QCryptographicHash::Sha256).toHex() == pin;
    };
    return {.configuration = tlsConfiguration(), .isServer = hasPin};
}

} // namespace nimbrelle
