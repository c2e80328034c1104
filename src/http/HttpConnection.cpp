#include "http/HttpConnection.h"

#include "http/HostConnector.h"

#include <QSslSocket>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr qint64 pieceSize = 64 * 1024; // of a request's body, so that a refusal is seen before all is sent
constexpr qint64 mostUnsent = 2 * pieceSize;
constexpr int firstRefusal = 400;

TransportError failureOf(ResponseFault fault)
{
    using Kind = TransportError::Kind;
    switch (fault) {
    case ResponseFault::cutShort:
        return TransportError(Kind::lost, u"connection closed"_s);
    case ResponseFault::oversized:
        return TransportError(Kind::other, u"the response has too many headers"_s);
    case ResponseFault::malformed:
        break;
    }
    return TransportError(Kind::other, u"the response is not HTTP"_s);
}

void identifyTo(const QNetworkProxy &proxy, HttpRequest &request)
{
    const QString credentials = proxy.user() + u':' + proxy.password();
    if (!proxy.user().isEmpty())
        request.headers.emplaceBack("Proxy-Authorization", "Basic " + credentials.toUtf8().toBase64());
}

} // namespace

HttpConnection::HttpConnection(const QUrl &server, TlsTrust trust)
    : m_server(server), m_trust(std::move(trust))
{
    m_silence.setSingleShot(true);
    connect(&m_silence, &QTimer::timeout, this, &HttpConnection::abort);
}

HttpConnection::~HttpConnection() = default;

void HttpConnection::begin()
{
    if (isBegun())
        return;
    m_phase = Phase::connecting;
    if (m_server.scheme() != u"http"_s && m_server.scheme() != u"https"_s)
        return finish(TransportError(TransportError::Kind::other, u"neither http nor https"_s));
    const std::optional<HttpRoute> route = HttpRoute::to(m_server);
    if (!route)
        return finish(TransportError(TransportError::Kind::proxy, u"no suitable proxy"_s));
    connectBy(*route);
}

void HttpConnection::connectBy(const HttpRoute &route)
{
    m_route = route;
    m_connector = std::make_unique<HostConnector>([this] { return makeSocket(); });
    connect(m_connector.get(), &HostConnector::connected, this, &HttpConnection::takeSocket);
    connect(m_connector.get(), &HostConnector::failed, this, [this](const TransportError &failure) {
        finish(m_route.forwarder ? TransportError(TransportError::Kind::proxy, failure.detail()) : failure);
    });
    if (m_route.tunnel.type() == QNetworkProxy::NoProxy)
        m_connector->connectTo(m_route.host, m_route.port);
    else
        m_connector->connectThrough(m_route.tunnel, m_route.host, m_route.port);
}

std::unique_ptr<QTcpSocket> HttpConnection::makeSocket()
{
    if (!HttpRoute::isTls(m_server))
        return std::make_unique<QTcpSocket>();
    auto socket = std::make_unique<QSslSocket>();
    QSslConfiguration configuration = m_trust.configuration;
    configuration.setAllowedNextProtocols({QSslConfiguration::NextProtocolHttp1_1});
    socket->setSslConfiguration(configuration);
    return socket;
}

// The socket's signals are queued, for the socket may be destroyed then, but not while it is sending them.
void HttpConnection::takeSocket()
{
    m_socket = m_connector->takeSocket();
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    QTcpSocket *const socket = m_socket.get();
    connect(socket, &QTcpSocket::readyRead, this, &HttpConnection::read, Qt::QueuedConnection);
    connect(socket, &QTcpSocket::bytesWritten, this, &HttpConnection::sendMore, Qt::QueuedConnection);
    connect(socket, &QTcpSocket::errorOccurred, this, &HttpConnection::handleClosed, Qt::QueuedConnection);
    connect(socket, &QTcpSocket::disconnected, this, &HttpConnection::handleClosed, Qt::QueuedConnection);
    if (auto *const tls = qobject_cast<QSslSocket *>(socket))
        startTls(*tls);
    else
        becomeReady();
}

void HttpConnection::startTls(QSslSocket &socket)
{
    QSslSocket *const tls = &socket;
    connect(tls, &QSslSocket::encryptedBytesWritten, this, &HttpConnection::sendMore, Qt::QueuedConnection);
    connect(
        tls, &QSslSocket::encrypted, this, [this, tls] { checkServer(*tls); }, Qt::QueuedConnection);
    if (m_trust.isServer) { // asked in the middle of the handshake, where nothing may be ended
        connect(tls, &QSslSocket::sslErrors, this, [this, tls] {
            m_isRefused = !m_trust.isServer(tls->peerCertificate());
            if (!m_isRefused)
                tls->ignoreSslErrors();
        });
    }
    tls->setPeerVerifyName(m_server.host(QUrl::FullyEncoded));
    tls->startClientEncryption();
}

void HttpConnection::checkServer(const QSslSocket &socket)
{
    if (&socket != m_socket.get())
        return;
    m_isRefused = m_trust.isServer && !m_trust.isServer(socket.peerCertificate());
    if (m_isRefused)
        return handleClosed();
    becomeReady();
}

void HttpConnection::becomeReady()
{
    m_phase = Phase::ready;
    if (m_socket->bytesAvailable() > 0)
        conclude(false);
    else if (m_request)
        sendHead();
}

void HttpConnection::send(const HttpRequest &request, std::chrono::milliseconds silence)
{
    if (isFinished())
        return;
    m_request = request;
    m_reader = ResponseReader(
        request.method == "HEAD" ? ResponseReader::Body::none : ResponseReader::Body::asFramed);
    m_silence.start(silence);
    if (m_phase == Phase::ready)
        sendHead();
    else
        begin();
}

bool HttpConnection::isUsable() const
{
    return !isFinished() && (!m_socket || m_socket->state() == QTcpSocket::ConnectedState);
}

void HttpConnection::sendHead()
{
    if (!isUsable())
        return; // the failure is on its way
    m_phase = Phase::exchanging;
    if (m_route.forwarder)
        identifyTo(*m_route.forwarder, *m_request);
    QByteArray bytes =
        m_request->head(m_route.forwarder ? HttpRequest::Target::absolute : HttpRequest::Target::path);
    m_sent = std::min<qsizetype>(m_request->body.size(), pieceSize);
    m_socket->write(bytes.append(m_request->body.first(m_sent)));
    m_socket->flush();
}

void HttpConnection::sendMore()
{
    if (m_phase != Phase::exchanging)
        return;
    if (m_reader.status() == 0)
        m_silence.start();
    const auto *const tls = qobject_cast<QSslSocket *>(m_socket.get());
    const auto unsent = [&] { return m_socket->bytesToWrite() + (tls ? tls->encryptedBytesToWrite() : 0); };
    while (m_sent < m_request->body.size() && unsent() < mostUnsent && m_reader.status() < firstRefusal) {
        const qsizetype count = std::min<qsizetype>(m_request->body.size() - m_sent, pieceSize);
        m_socket->write(m_request->body.constData() + m_sent, count);
        m_sent += count;
    }
}

void HttpConnection::read()
{
    const bool isNew = takeBytes();
    conclude(isNew);
}

// Takes what the socket has. True when there is something new to tell.
bool HttpConnection::takeBytes()
{
    if (!m_socket || !m_socket->isOpen() || m_phase != Phase::exchanging)
        return false;
    const bool hadHead = m_reader.hasHead();
    const QByteArray body = m_reader.read(m_socket->readAll());
    m_body.append(body);
    const bool isNew = !body.isEmpty() || hadHead != m_reader.hasHead();
    if (isNew)
        m_silence.start();
    return isNew;
}

// Ends the exchange if that is due; else tells what is new. We may be destroyed then.
void HttpConnection::conclude(bool isNew)
{
    if (m_phase == Phase::ready && m_socket->bytesAvailable() > 0)
        finish(TransportError(TransportError::Kind::lost, u"the server spoke first"_s));
    else if (m_reader.fault())
        finish(failureOf(*m_reader.fault()));
    else if (m_reader.isComplete())
        finish();
    else if (isNew)
        emit readyRead();
}

void HttpConnection::handleClosed()
{
    if (!m_socket)
        return;
    takeBytes();
    const TransportError failure = TransportError::ofSocket(m_socket->error(), m_socket->errorString());
    if (m_phase == Phase::exchanging && failure.kind() == TransportError::Kind::lost)
        m_reader.end();
    if (m_isRefused)
        finish(TransportError(TransportError::Kind::certificate, u"the certificate has another pin"_s));
    else if (m_reader.fault() || m_reader.isComplete())
        conclude(false);
    else
        finish(failure);
}

void HttpConnection::abort()
{
    finish(TransportError(TransportError::Kind::timedOut, u"timed out"_s));
}

void HttpConnection::finish(std::optional<TransportError> failure)
{
    if (isFinished())
        return;
    m_phase = Phase::finished;
    m_failure = std::move(failure);
    m_silence.stop();
    m_connector.reset();
    m_socket.reset();
    emit finished();
}

} // namespace nimbrelle
