#include "sync/SyncProtocol.h"

#include "frame/RecordCodec.h"
#include "frame/Text.h"
#include "sync/BundleForm.h"
#include "sync/SyncError.h"

#include <charconv>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

enum Status { ok = 200, notModified = 304, notFound = 404, preconditionFailed = 412 };

const QString bundlePath = u"/v1/bundle"_s;

QByteArray quoted(qint64 version)
{
    return '"' + QByteArray::number(version) + '"';
}

SyncReading readingOf(const SyncResponse &response)
{
    const auto document = decode<SyncBundle>(response.body);
    if (!document)
        throw unreadableBundle();
    return {.kind = SyncReading::Kind::document,
        .version = SyncProtocol::versionOf(response.eTag),
        .document = *document,
        .hash = BundleForm::hash(*document)};
}

} // namespace

QCoro::Task<> SyncProtocol::ping(std::stop_token stop)
{
    SyncRequest request;
    request.path = u"/v1/ping"_s;
    const SyncResponse response = co_await m_transport.send(std::move(request), stop);
    if (response.status != ok)
        throw SyncError::http(response.status);
}

QCoro::Task<SyncReading> SyncProtocol::read(qint64 known, std::stop_token stop)
{
    SyncRequest request;
    request.path = bundlePath;
    if (known > 0)
        request.ifNoneMatch = quoted(known);
    const SyncResponse response = co_await m_transport.send(std::move(request), stop);
    SyncReading reading;
    switch (response.status) {
    case ok:
        reading = readingOf(response);
        break;
    case notModified:
        if (known <= 0) // nothing was named that could be unchanged
            throw SyncError::http(response.status);
        reading.kind = SyncReading::Kind::unchanged;
        break;
    case notFound:
        break;
    default:
        throw SyncError::http(response.status);
    }
    co_return reading;
}

QCoro::Task<std::optional<qint64>> SyncProtocol::write(qint64 base, QByteArray json, std::stop_token stop)
{
    SyncRequest request;
    request.method = SyncRequest::Method::put;
    request.path = bundlePath;
    request.ifMatch = quoted(base);
    request.body = std::move(json);
    const SyncResponse response = co_await m_transport.send(std::move(request), stop);
    std::optional<qint64> version;
    if (response.status == ok)
        version = versionOf(response.eTag);
    else if (response.status != preconditionFailed)
        throw SyncError::http(response.status);
    co_return version;
}

qint64 SyncProtocol::versionOf(const QByteArray &eTag)
{
    const QByteArray text = trimmedOf(QString::fromLatin1(eTag), u"\"W/").toLatin1();
    qint64 version = 0;
    const auto [end, error] = std::from_chars(text.cbegin(), text.cend(), version);
    return error == std::errc() && end == text.cend() ? version : 0;
}

} // namespace nimbrelle
