#pragma once

#include "http/HttpRequest.h"
#include "http/HttpRoute.h"
#include "http/ResponseReader.h"
#include "http/TransportError.h"

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTcpSocket>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

class QSslSocket;

namespace nimbrelle {

class HostConnector;

/// Whom a TLS connection trusts.
struct TlsTrust {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    /// When set, it alone decides, by the server's own certificate.
    std::function<bool(const QSslCertificate &leaf)> isServer;
};

/// A connection to an HTTP server that carries one exchange and is closed behind it. Nothing is sent twice
/// and no redirect is followed. All in the event loop of the main thread; it may be destroyed at any time,
/// also from its own signals.
class HttpConnection final : public QObject {
    Q_OBJECT

public:
    explicit HttpConnection(const QUrl &server, TlsTrust trust = TlsTrust());
    ~HttpConnection() override;

    /// Finds the host, connects and agrees on TLS, without a byte of the user's.
    void begin();
    bool isBegun() const { return m_phase != Phase::idle; }
    /// Begins if need be, and sends the request. It fails as timed out once nothing of it moves for
    /// `silence`: from now to the next of its bytes that leaves, from there to the head of the response, from
    /// one piece of the body to the next.
    void send(const HttpRequest &request, std::chrono::milliseconds silence);
    /// Ends it at once, as timed out.
    void abort();

    /// The response is complete, or there is a failure. May be so as soon as begin() or send() returns.
    bool isFinished() const { return m_phase == Phase::finished; }
    const std::optional<TransportError> &failure() const { return m_failure; }
    /// Whether the failure was that the response has more headers than any server means to send.
    bool hasOversizedHead() const { return m_reader.fault() == ResponseFault::oversized; }

    /// Whether a request may be sent, now or once it is connected. Knows of a closed connection before it is
    /// told as a failure.
    bool isUsable() const;

    int status() const { return m_reader.status(); } ///< 0 until it is known
    QByteArray header(QByteArrayView lowerCaseName) const { return m_reader.header(lowerCaseName); }
    /// What came of the body since the last time.
    QByteArray takeBody() { return std::exchange(m_body, {}); }

signals:
    void readyRead(); ///< the head or a part of the body came
    void finished();

private:
    enum class Phase { idle, connecting, ready, exchanging, finished };

    std::unique_ptr<QTcpSocket> makeSocket();
    void connectBy(const HttpRoute &route);
    void takeSocket();
    void startTls(QSslSocket &socket);
    void checkServer(const QSslSocket &socket);
    void becomeReady();
    void sendHead();
    void sendMore();
    void read();
    void handleClosed();
    bool takeBytes();
    void conclude(bool isNew);
    void finish(std::optional<TransportError> failure = std::nullopt);

    const QUrl m_server;
    const TlsTrust m_trust;
    HttpRoute m_route;
    Phase m_phase = Phase::idle;
    bool m_isRefused = false; ///< the server showed another certificate
    std::unique_ptr<HostConnector> m_connector;
    std::unique_ptr<QTcpSocket> m_socket;
    std::optional<HttpRequest> m_request;
    qsizetype m_sent = 0; ///< of the request's body
    ResponseReader m_reader;
    QByteArray m_body;
    QTimer m_silence;
    std::optional<TransportError> m_failure;
};

} // namespace nimbrelle
