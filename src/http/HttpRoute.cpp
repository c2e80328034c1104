#include "http/HttpRoute.h"

#include <QNetworkProxyFactory>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

bool forwards(const QNetworkProxy &proxy)
{
    return proxy.capabilities().testFlag(QNetworkProxy::CachingCapability)
        && (proxy.type() == QNetworkProxy::HttpProxy || proxy.type() == QNetworkProxy::HttpCachingProxy);
}

} // namespace

bool HttpRoute::isTls(const QUrl &server)
{
    return server.scheme() == u"https"_s;
}

int HttpRoute::defaultPort(const QUrl &server)
{
    return isTls(server) ? 443 : 80;
}

std::optional<HttpRoute> HttpRoute::to(const QUrl &server)
{
    HttpRoute direct{.host = server.host(QUrl::FullyEncoded),
        .port = static_cast<quint16>(server.port(defaultPort(server)))};
    for (const QNetworkProxy &proxy : QNetworkProxyFactory::proxyForQuery(QNetworkProxyQuery(server))) {
        if (!isTls(server) && forwards(proxy))
            return HttpRoute{.host = proxy.hostName(), .port = proxy.port(), .forwarder = proxy};
        if (proxy.isTransparentProxy()) { // as "no proxy" is
            direct.tunnel = proxy;
            return direct;
        }
    }
    return std::nullopt;
}

} // namespace nimbrelle
