#include "http/HttpRequest.h"

#include "http/HttpRoute.h"

namespace nimbrelle {

namespace {

QByteArray pathOf(const QUrl &url)
{
    const QString path = url.path(QUrl::FullyEncoded);
    QByteArray target = path.isEmpty() ? "/" : path.toLatin1();
    if (url.hasQuery())
        target += '?' + url.query(QUrl::FullyEncoded).toLatin1();
    return target;
}

// The interface that an IPv6 address may name concerns this machine alone.
QByteArray hostOf(const QUrl &url)
{
    QByteArray host = url.host(QUrl::FullyEncoded).toLatin1();
    if (host.contains(':'))
        host = '[' + host.first(host.contains('%') ? host.indexOf('%') : host.size()) + ']';
    const int port = url.port(HttpRoute::defaultPort(url));
    return port == HttpRoute::defaultPort(url) ? host : host + ':' + QByteArray::number(port);
}

} // namespace

QByteArray HttpRequest::head(Target target) const
{
    QByteArray head = method + ' ';
    if (target == Target::absolute)
        head += url.scheme().toLatin1() + "://" + hostOf(url);
    head += pathOf(url) + " HTTP/1.1\r\nHost: " + hostOf(url) + "\r\nConnection: close\r\n";
    if (method != "GET" && method != "HEAD")
        head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    for (const auto &[name, value] : headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

} // namespace nimbrelle
