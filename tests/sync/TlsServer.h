#pragma once

#include <QSslServer>
#include <QSslSocket>

namespace nimbrelle {

/// A TLS server on loopback that writes down what reaches it and gives each request one answer, raw.
class TlsServer : public QSslServer {
public:
    TlsServer(const char *certificate, const char *key, QSsl::SslProtocol protocol = QSsl::TlsV1_2OrLater);

    QString address(const QString &host = QStringLiteral("127.0.0.1")) const;
    /// What a link must hold to reach this server.
    QString pin() const;

    QByteArray received; ///< after decryption, of all connections
    int connections = 0; ///< before any handshake
    QByteArray answer = "HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n";
    bool closesAfterAnswer = false;

protected:
    void incomingConnection(qintptr socket) override;

private:
    void serve(QSslSocket *socket);

    QSslCertificate m_certificate;
};

} // namespace nimbrelle
