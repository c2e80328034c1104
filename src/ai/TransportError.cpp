#include "ai/TransportError.h"

namespace nimbrelle {

namespace {

QString textOf(TransportError::Kind kind)
{
    switch (kind) {
    case TransportError::Kind::noNetwork:
        return QStringLiteral("网络不通，请检查网络连接。");
    case TransportError::Kind::hostNotFound:
        return QStringLiteral("找不到服务器，请检查网络和服务器地址。");
    case TransportError::Kind::refused:
        return QStringLiteral("服务器拒绝了连接，请检查服务器地址或稍后再试。");
    case TransportError::Kind::lost:
        return QStringLiteral("和服务器的连接断开了，请再试一次。");
    case TransportError::Kind::timedOut:
        return QStringLiteral("服务器太久没有回应，请稍后再试。");
    case TransportError::Kind::tls:
        return QStringLiteral("无法和服务器建立安全连接。");
    case TransportError::Kind::proxy:
        return QStringLiteral("代理服务器连不上，请检查代理设置。");
    case TransportError::Kind::cancelled:
        return QStringLiteral("已取消");
    case TransportError::Kind::other:
        break;
    }
    return QStringLiteral("网络请求失败，请稍后再试。");
}

} // namespace

TransportError::TransportError(Kind kind) : Failure(textOf(kind)), m_kind(kind) { }

TransportError::Kind TransportError::kindOf(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::UnknownNetworkError: // also "network unreachable"
        return Kind::noNetwork;
    case QNetworkReply::HostNotFoundError:
        return Kind::hostNotFound;
    case QNetworkReply::ConnectionRefusedError:
        return Kind::refused;
    case QNetworkReply::RemoteHostClosedError:
        return Kind::lost;
    case QNetworkReply::TimeoutError:
        return Kind::timedOut;
    case QNetworkReply::SslHandshakeFailedError:
        return Kind::tls;
    case QNetworkReply::OperationCanceledError:
        return Kind::cancelled;
    default:
        return error >= QNetworkReply::ProxyConnectionRefusedError
                && error <= QNetworkReply::UnknownProxyError
            ? Kind::proxy
            : Kind::other;
    }
}

bool isTransportFailure(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::NoError:
        return false;
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolFailure:
        return true;
    default:
        return error <= QNetworkReply::UnknownProxyError;
    }
}

} // namespace nimbrelle
