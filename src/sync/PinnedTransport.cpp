#include "sync/PinnedTransport.h"

#include "ai/ReplyLimits.h"
#include "ai/TransportError.h"
#include "sync/SyncError.h"

#include <QCoro/QCoroSignal>
#include <QCryptographicHash>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QTimer>

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

} // namespace

PinnedTransport::PinnedTransport(SyncLink link, Limits limits)
    : m_link(std::move(link)), m_limits(limits), m_network(new QNetworkAccessManager)
{
    m_network->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
}

PinnedTransport::~PinnedTransport()
{
    m_network->deleteLater();
}

std::unique_ptr<SyncTransport> PinnedTransport::open(const SyncLink &link)
{
    return std::make_unique<PinnedTransport>(link);
}

QCoro::Task<SyncResponse> PinnedTransport::send(SyncRequest request, std::stop_token stop)
{
    refuseUnsendable(m_link.token);
    QNetworkReply *const reply = start(request);
    const std::unique_ptr<QNetworkReply, QScopedPointerDeleteLater> owner(reply);
    const std::stop_callback abort(stop, [reply] { reply->abort(); });
    if (!reply->isFinished())
        co_await qCoro(reply, &QNetworkReply::finished);
    if (stop.stop_requested())
        throw Cancelled();
    co_return answerOf(*reply);
}

QNetworkRequest PinnedTransport::platformRequest(const SyncRequest &request) const
{
    const QUrl url(m_link.server + request.path, QUrl::StrictMode);
    if (url.scheme() != u"https"_s)
        throw TransportError(TransportError::Kind::certificate, u"not https"_s);
    QNetworkRequest result(url);
    result.setSslConfiguration(tlsConfiguration());
    result.setTransferTimeout(static_cast<int>(m_limits.silence.count()));
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    result.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    result.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setRawHeader("User-Agent", "Nimbrelle");
    result.setRawHeader("Accept-Language", "zh-CN");
    result.setRawHeader("Authorization", "Bearer " + m_link.token.toUtf8());
    if (request.ifNoneMatch)
        result.setRawHeader("If-None-Match", *request.ifNoneMatch);
    if (request.ifMatch)
        result.setRawHeader("If-Match", *request.ifMatch);
    if (request.method == SyncRequest::Method::put)
        result.setRawHeader("Content-Type", "application/json");
    return result;
}

QNetworkReply *PinnedTransport::start(const SyncRequest &request)
{
    m_isRefused = false;
    m_isTooLong = false;
    const QNetworkRequest prepared = platformRequest(request);
    QNetworkReply *const reply = request.method == SyncRequest::Method::put
        ? m_network->put(prepared, request.body)
        : m_network->get(prepared);
    QObject::connect(reply, &QNetworkReply::sslErrors, reply, [this, reply] { judgeCertificate(reply); });
    QObject::connect(reply, &QNetworkReply::encrypted, reply, [this, reply] {
        if (!hasPin(reply->sslConfiguration().peerCertificate())) {
            m_isRefused = true;
            reply->abort();
        }
    });
    watchSize(reply);
    QTimer::singleShot(m_limits.exchange, reply, &QNetworkReply::abort);
    return reply;
}

void PinnedTransport::watchSize(QNetworkReply *reply)
{
    const auto endIf = [this, reply](bool isTooLong) {
        if (!isTooLong)
            return;
        m_isTooLong = true;
        reply->abort();
    };
    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply,
        [reply, endIf] { endIf(hasOversizedHeaders(*reply)); });
    QObject::connect(reply, &QNetworkReply::readyRead, reply,
        [this, reply, endIf] { endIf(reply->bytesAvailable() > m_limits.body); });
}

void PinnedTransport::judgeCertificate(QNetworkReply *reply)
{
    if (hasPin(reply->sslConfiguration().peerCertificate()))
        reply->ignoreSslErrors();
    else
        m_isRefused = true;
}

bool PinnedTransport::hasPin(const QSslCertificate &leaf) const
{
    const QByteArray digest = QCryptographicHash::hash(leaf.toDer(), QCryptographicHash::Sha256);
    return !leaf.isNull() && QString::fromLatin1(digest.toHex()) == m_link.pin;
}

SyncResponse PinnedTransport::answerOf(QNetworkReply &reply) const
{
    if (m_isRefused)
        throw TransportError(TransportError::Kind::certificate, reply.errorString());
    if (m_isTooLong)
        throw unreadableBundle();
    if (const auto failure = TransportError::of(reply))
        throw *failure;
    return {.status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
        .eTag = reply.rawHeader("ETag"),
        .body = reply.readAll()};
}

} // namespace nimbrelle
