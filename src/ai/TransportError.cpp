#include "ai/TransportError.h"

#include <QNetworkReply>

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

TransportError::Kind kindOf(QNetworkReply::NetworkError error)
{
    using Kind = TransportError::Kind;
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
    case QNetworkReply::OperationCanceledError:
        return Kind::timedOut;
    case QNetworkReply::SslHandshakeFailedError:
        return Kind::tls;
    default:
        return error >= QNetworkReply::ProxyConnectionRefusedError
                && error <= QNetworkReply::UnknownProxyError
            ? Kind::proxy
            : Kind::other;
    }
}

// The codes above the proxy's only repeat the HTTP status, with two exceptions.
bool isOfTransport(QNetworkReply::NetworkError error)
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

} // namespace

TransportError::TransportError(Kind kind, QString detail)
    : Failure(textOf(kind)), m_kind(kind), m_detail(std::move(detail))
{
}

std::optional<TransportError> TransportError::of(const QNetworkReply &reply)
{
    if (!isOfTransport(reply.error()))
        return std::nullopt;
    return TransportError(kindOf(reply.error()), reply.errorString());
}

} // namespace nimbrelle
