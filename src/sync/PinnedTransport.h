#pragma once

#include "sync/SyncLink.h"
#include "sync/SyncTransport.h"

#include <QNetworkRequest>
#include <QSslCertificate>

#include <chrono>

class QNetworkAccessManager;
class QNetworkReply;

namespace nimbrelle {

/// HTTPS to a server whose leaf certificate has the link's pin, whatever the system would say of it: expired
/// and wrong-named ones are good, trusted ones with another pin are not. The pin is checked before the first
/// byte of a request is sent. Redirects are not followed, and a request may stand still for at most 60
/// seconds.
class PinnedTransport final : public SyncTransport {
public:
    explicit PinnedTransport(SyncLink link, std::chrono::milliseconds timeLimit = std::chrono::seconds{60});
    ~PinnedTransport() override;

    static std::unique_ptr<SyncTransport> open(const SyncLink &link);

    QCoro::Task<SyncResponse> send(SyncRequest request, std::stop_token stop) override;

private:
    QNetworkRequest platformRequest(const SyncRequest &request) const;
    QNetworkReply *start(const SyncRequest &request);
    void judgeCertificate(QNetworkReply *reply);
    bool hasPin(const QSslCertificate &leaf) const;
    SyncResponse answerOf(QNetworkReply &reply) const;

    const SyncLink m_link;
    const std::chrono::milliseconds m_timeLimit;
    QNetworkAccessManager *m_network; ///< deleted later: a reply may be in the middle of telling us
    bool m_isRefused = false; ///< the certificate of the request under way had another pin
};

} // namespace nimbrelle
