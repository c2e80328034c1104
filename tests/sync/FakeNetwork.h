#pragma once

#include "sync/SyncTransport.h"

#include <deque>
#include <vector>

namespace nimbrelle {

/// What a sync server answers, wherever it runs.
class AnsweringServer {
public:
    virtual ~AnsweringServer() = default;
    virtual SyncResponse answer(const SyncRequest &request) = 0;
};

/// One document with a version, kept in memory.
class MemoryServer final : public AnsweringServer {
public:
    SyncResponse answer(const SyncRequest &request) override;

    QByteArray document;
    qint64 version = 0;
};

/// The road between one device and its server: each request waits until the test answers or fails it.
class FakeNetwork {
public:
    SyncTransport::Factory connect();

    bool isWaiting() const { return !m_waiting.empty(); }
    const SyncRequest &waiting() const;

    void answer(const SyncResponse &response);
    /// No answer comes: the request or its answer was lost on the way.
    void lose();
    /// Lets `server` answer until nothing waits any more.
    void serve(AnsweringServer &server);

    std::vector<SyncRequest> requests; ///< all that were ever sent
    int sessions = 0;

private:
    class Transport;
    struct Exchange;

    QCoro::Task<SyncResponse> send(SyncRequest request, std::stop_token stop);
    void forget(const Exchange *exchange);

    std::deque<std::shared_ptr<Exchange>> m_waiting;
};

} // namespace nimbrelle
