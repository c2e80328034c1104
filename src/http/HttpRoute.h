#pragma once

#include <QNetworkProxy>
#include <QUrl>

#include <optional>

namespace nimbrelle {

/// How a server is reached: where the connection leads, and what the system's proxy settings want of it.
struct HttpRoute {
    QString host;
    quint16 port = 0;
    QNetworkProxy tunnel{QNetworkProxy::NoProxy}; ///< a proxy that connects us through
    /// Set for a proxy that passes plain requests on; host and port are then its own.
    std::optional<QNetworkProxy> forwarder;

    /// To the server of an http or https address. Absent when none of the proxies that the settings name is
    /// of use.
    static std::optional<HttpRoute> to(const QUrl &server);
    static bool isTls(const QUrl &server);
    static int defaultPort(const QUrl &server);
};

} // namespace nimbrelle
