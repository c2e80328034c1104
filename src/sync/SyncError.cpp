#include "sync/SyncError.h"

#include "http/TransportError.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

QString sentenceOfStatus(qint64 status)
{
    if (status == 401)
        return u"同步码里的密码不对"_s;
    return u"服务器出错了（%1）"_s.arg(status);
}

QString sentenceOf(const TransportError &error)
{
    return error.kind() == TransportError::Kind::certificate ? error.text()
                                                             : u"连不上同步服务器（没网，或者服务器停了）"_s;
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
    return {Kind::busy, 0, u"服务器上的单词本一直在变，过一会儿再试"_s};
}

Failure unreadableBundle()
{
    return Failure(u"服务器上的单词本读不懂"_s);
}

QString describe(const std::exception &error)
{
    if (const auto *transport = dynamic_cast<const TransportError *>(&error))
        return sentenceOf(*transport);
    if (const auto *answer = dynamic_cast<const SyncError *>(&error))
        return answer->text();
    return u"同步出错了："_s + QString::fromUtf8(error.what());
}

QString detailOf(const std::exception &error)
{
    if (const auto *transport = dynamic_cast<const TransportError *>(&error))
        return transport->detail();
    if (const auto *answer = dynamic_cast<const SyncError *>(&error))
        return answer->kind() == SyncError::Kind::busy ? u"busy"_s : u"http(%1)"_s.arg(answer->status());
    return QString::fromUtf8(error.what());
}

} // namespace nimbrelle
