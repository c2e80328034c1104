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
/// byte of a request is sent. Redirects are not followed. A request may stand still for at most 60 seconds
/// and take at most 10 minutes, and an answer may have 256 MB.
class PinnedTransport final : public SyncTransport {
public:
    struct Limits {
        std::chrono::milliseconds silence = std::chrono::seconds{60};
        std::chrono::milliseconds exchange = std::chrono::minutes{10};
        qint64 body = 256LL * 1024 * 1024; ///< bytes
    };

    explicit PinnedTransport(SyncLink link) : PinnedTransport(std::move(link), Limits()) { }
    PinnedTransport(SyncLink link, Limits limits);
    ~PinnedTransport() override;

    static std::unique_ptr<SyncTransport> open(const SyncLink &link);

    QCoro::Task<SyncResponse> send(SyncRequest request, std::stop_token stop) override;

private:
    QNetworkRequest platformRequest(const SyncRequest &request) const;
    QNetworkReply *start(const SyncRequest &request);
    void watchSize(QNetworkReply *reply);
    void judgeCertificate(QNetworkReply *reply);
    bool hasPin(const QSslCertificate &leaf) const;
    SyncResponse answerOf(QNetworkReply &reply) const;

    const SyncLink m_link;
    const Limits m_limits;
    QNetworkAccessManager *m_network; ///< deleted later: a reply may be in the middle of telling us
    bool m_isRefused = false; ///< the certificate of the request under way had another pin
    bool m_isTooLong = false; ///< the answer under way had more than its limit
};

} // namespace nimbrelle
