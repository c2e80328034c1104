#include "sync/TlsServer.h"

#include <QCryptographicHash>
#include <QSslConfiguration>
#include <QSslKey>

using namespace Qt::StringLiterals;

namespace nimbrelle {

TlsServer::TlsServer(const char *certificate, const char *key, QSsl::SslProtocol protocol)
    : m_certificate(QByteArray(certificate))
{
    QSslConfiguration configuration;
    configuration.setLocalCertificate(m_certificate);
    configuration.setPrivateKey(QSslKey(QByteArray(key), QSsl::Ec));
    configuration.setProtocol(protocol);
    setSslConfiguration(configuration);
    connect(this, &QTcpServer::pendingConnectionAvailable, this, [this] {
        while (auto *socket = qobject_cast<QSslSocket *>(nextPendingConnection()))
            serve(socket);
    });
    listen(QHostAddress::LocalHost);
}

QString TlsServer::address(const QString &host) const
{
    return u"https://%1:%2"_s.arg(host).arg(serverPort());
}

QString TlsServer::pin() const
{
    return QString::fromLatin1(m_certificate.digest(QCryptographicHash::Sha256).toHex());
}

void TlsServer::incomingConnection(qintptr socket)
{
    ++connections;
    QSslServer::incomingConnection(socket);
}

void TlsServer::serve(QSslSocket *socket)
{
    const auto read = [this, socket] {
        const QByteArray request = socket->readAll();
        received += request;
        if (!request.contains("\r\n\r\n"))
            return;
        socket->write(answer);
        if (closesAfterAnswer)
            socket->disconnectFromHost();
    };
    connect(socket, &QSslSocket::readyRead, socket, read);
    if (socket->bytesAvailable() > 0)
        read();
}

} // namespace nimbrelle
