#include "http/TransportError.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

QString textOf(TransportError::Kind kind)
{
    switch (kind) {
    case TransportError::Kind::noNetwork:
        return u"网络不通，请检查网络连接。"_s;
    case TransportError::Kind::hostNotFound:
        return u"找不到服务器，请检查网络和服务器地址。"_s;
    case TransportError::Kind::refused:
        return u"服务器拒绝了连接，请检查服务器地址或稍后再试。"_s;
    case TransportError::Kind::lost:
        return u"和服务器的连接断开了，请再试一次。"_s;
    case TransportError::Kind::timedOut:
        return u"服务器太久没有回应，请稍后再试。"_s;
    case TransportError::Kind::tls:
        return u"无法和服务器建立安全连接。"_s;
    case TransportError::Kind::certificate:
        return u"服务器的证书对不上，可能连到了别的地方"_s;
    case TransportError::Kind::proxy:
        return u"代理服务器连不上，请检查代理设置。"_s;
    case TransportError::Kind::other:
        break;
    }
    return u"网络请求失败，请稍后再试。"_s;
}

TransportError::Kind kindOf(QAbstractSocket::SocketError error)
{
    using Kind = TransportError::Kind;
    switch (error) {
    case QAbstractSocket::HostNotFoundError:
        return Kind::hostNotFound;
    case QAbstractSocket::ConnectionRefusedError:
        return Kind::refused;
    case QAbstractSocket::RemoteHostClosedError:
    case QAbstractSocket::UnknownSocketError: // what a socket has that was closed without an error
        return Kind::lost;
    case QAbstractSocket::SocketTimeoutError:
        return Kind::timedOut;
    case QAbstractSocket::SslHandshakeFailedError:
    case QAbstractSocket::SslInternalError:
    case QAbstractSocket::SslInvalidUserDataError:
        return Kind::tls;
    case QAbstractSocket::ProxyAuthenticationRequiredError:
    case QAbstractSocket::ProxyConnectionRefusedError:
    case QAbstractSocket::ProxyConnectionClosedError:
    case QAbstractSocket::ProxyConnectionTimeoutError:
    case QAbstractSocket::ProxyNotFoundError:
    case QAbstractSocket::ProxyProtocolError:
        return Kind::proxy;
    default:
        return Kind::noNetwork; // "network unreachable" and its like
    }
}

} // namespace

TransportError::TransportError(Kind kind, QString detail)
    : Failure(textOf(kind)), m_kind(kind), m_detail(std::move(detail))
{
}

TransportError TransportError::ofSocket(QAbstractSocket::SocketError error, const QString &detail)
{
    return TransportError(kindOf(error), detail);
}

} // namespace nimbrelle
