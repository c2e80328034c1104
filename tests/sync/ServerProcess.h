#pragma once

#include "sync/FakeNetwork.h"
#include "sync/SyncLink.h"

#include <QProcess>
#include <QTemporaryDir>

namespace nimbrelle {

/// The real server program with an empty data folder, reached over TLS on loopback.
class ServerProcess final : public AnsweringServer {
public:
    /// Ends the test program's own waiting with an exception where the server doesn't come up.
    explicit ServerProcess(const QString &program);
    ~ServerProcess() override;

    SyncResponse answer(const SyncRequest &request) override;
    const SyncLink &link() const { return m_link; }

private:
    QStringList arguments(const QStringList &command) const;
    void init(const QString &program);
    void serve(const QString &program);

    QTemporaryDir m_directory;
    QProcess m_process;
    SyncLink m_link;
    std::unique_ptr<SyncTransport> m_transport;
};

} // namespace nimbrelle
