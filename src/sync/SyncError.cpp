#include "sync/SyncError.h"

namespace nimbrelle {

namespace {

QString sentenceOfStatus(qint64 status)
{
    if (status == 401)
        return QStringLiteral("同步码里的密码不对");
    return QStringLiteral("服务器出错了（%1）").arg(status);
}

QString sentenceOf(SyncTransportError::Kind kind)
{
    switch (kind) {
    case SyncTransportError::Kind::certificate:
        return QStringLiteral("服务器的证书对不上，可能连到了别的地方");
    case SyncTransportError::Kind::connection:
        return QStringLiteral("连不上同步服务器（没网，或者服务器停了）");
    }
    return {};
}

} // namespace

SyncError::SyncError(Kind kind, qint64 status, const QString &text)
    : Failure(text), m_kind(kind), m_status(status)
{
}

SyncError SyncError::http(qint64 status)
{
    return {Kind::http, status, sentenceOfStatus(status)};
}

SyncError SyncError::busy()
{
    return {Kind::busy, 0, QStringLiteral("服务器上的单词本一直在变，过一会儿再试")};
}

SyncTransportError::SyncTransportError(Kind kind, QString detail)
    : Failure(sentenceOf(kind)), m_kind(kind), m_detail(std::move(detail))
{
}

QString describe(const std::exception &error)
{
    if (dynamic_cast<const SyncError *>(&error) || dynamic_cast<const SyncTransportError *>(&error))
        return static_cast<const Failure &>(error).text();
    return QStringLiteral("同步出错了：") + QString::fromUtf8(error.what());
}

QString detailOf(const std::exception &error)
{
    if (const auto *transport = dynamic_cast<const SyncTransportError *>(&error))
        return transport->detail();
    if (const auto *answer = dynamic_cast<const SyncError *>(&error))
        return answer->kind() == SyncError::Kind::busy ? QStringLiteral("busy")
                                                       : QStringLiteral("http(%1)").arg(answer->status());
    return QString::fromUtf8(error.what());
}

} // namespace nimbrelle
