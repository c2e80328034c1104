#pragma once

#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>

#include <memory>

namespace nimbrelle {

/// For a server of the tests' own that speaks TLS.
inline std::unique_ptr<QSslServer> tlsListener(const char *certificate, const char *key)
{
    QSslConfiguration configuration;
    configuration.setLocalCertificate(QSslCertificate(QByteArray(certificate)));
    configuration.setPrivateKey(QSslKey(QByteArray(key), QSsl::Ec));
    auto listener = std::make_unique<QSslServer>();
    listener->setSslConfiguration(configuration);
    return listener;
}

} // namespace nimbrelle
