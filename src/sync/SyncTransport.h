#pragma once

#include <QByteArray>
#include <QCoro/QCoroTask>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace nimbrelle {

struct SyncLink;

/// One request to the sync server. The transport adds the headers that all of them share.
struct SyncRequest {
    enum class Method { get, put };

    Method method = Method::get;
    QString path; ///< relative to the server's address, with its leading slash
    std::optional<QByteArray> ifNoneMatch;
    std::optional<QByteArray> ifMatch;
    QByteArray body; ///< JSON; of a PUT only
};

struct SyncResponse {
    int status = 0; ///< 0 when the answer was not HTTP
    QByteArray eTag; ///< empty when there is none
    QByteArray body;
};

/// The session with one sync server for the length of one run: no cache, no cookies, nothing is stored.
class SyncTransport {
public:
    /// A fresh session for each run.
    using Factory = std::function<std::unique_ptr<SyncTransport>(const SyncLink &)>;

    virtual ~SyncTransport() = default;

    /// Any status is an answer. Throws TransportError when there was none, Cancelled when stopped. The
    /// transport must outlive the task.
    virtual QCoro::Task<SyncResponse> send(SyncRequest request, std::stop_token stop) = 0;
};

} // namespace nimbrelle
