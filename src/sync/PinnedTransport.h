#pragma once

#include "http/HttpConnection.h"
#include "sync/SyncLink.h"
#include "sync/SyncTransport.h"

#include <chrono>

namespace nimbrelle {

/// HTTPS to a server whose leaf certificate has the link's pin, whatever the system would say of it: expired
/// and wrong-named ones are good, trusted ones with another pin are not. The pin is checked before the first
/// byte of a request is sent. Each request has a connection to itself. Redirects are not followed. A request
/// may stand still for at most 60 seconds and take at most 10 minutes, and an answer may have 256 MB.
class PinnedTransport final : public SyncTransport {
public:
    struct Limits {
        std::chrono::milliseconds silence = std::chrono::seconds{60};
        std::chrono::milliseconds exchange = std::chrono::minutes{10};
        qint64 body = 256LL * 1024 * 1024; ///< bytes
    };

    explicit PinnedTransport(SyncLink link) : PinnedTransport(std::move(link), Limits()) { }
    PinnedTransport(SyncLink link, Limits limits) : m_link(std::move(link)), m_limits(limits) { }

    static std::unique_ptr<SyncTransport> open(const SyncLink &link);

    QCoro::Task<SyncResponse> send(SyncRequest request, std::stop_token stop) override;

private:
    HttpRequest httpRequest(const SyncRequest &request) const;
    TlsTrust trust() const;

    const SyncLink m_link;
    const Limits m_limits;
};

} // namespace nimbrelle
