#include "sync/FakeNetwork.h"

#include "http/TransportError.h"

#include <coroutine>

using namespace Qt::StringLiterals;

namespace nimbrelle {

SyncResponse MemoryServer::answer(const SyncRequest &request)
{
    const QByteArray current = '"' + QByteArray::number(version) + '"';
    if (request.method == SyncRequest::Method::put) {
        if (request.ifMatch != current)
            return {412, current, {}};
        document = request.body;
        ++version;
        return {200, '"' + QByteArray::number(version) + '"', {}};
    }
    if (version == 0)
        return {404, {}, {}};
    if (request.ifNoneMatch == current)
        return {304, current, {}};
    return {200, current, document};
}

struct FakeNetwork::Exchange {
    SyncRequest request;
    std::coroutine_handle<> sleeper;
    SyncResponse response;
    std::exception_ptr failure;
};

class FakeNetwork::Transport final : public SyncTransport {
public:
    explicit Transport(FakeNetwork &network) : m_network(network) { }

    QCoro::Task<SyncResponse> send(SyncRequest request, std::stop_token stop) override
    {
        return m_network.send(std::move(request), std::move(stop));
    }

private:
    FakeNetwork &m_network;
};

namespace {

struct Wait {
    std::coroutine_handle<> &sleeper;

    bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> handle) { sleeper = handle; }
    void await_resume() const { }
};

} // namespace

SyncTransport::Factory FakeNetwork::connect()
{
    return [this](const SyncLink &) -> std::unique_ptr<SyncTransport> {
        ++sessions;
        return std::make_unique<Transport>(*this);
    };
}

QCoro::Task<SyncResponse> FakeNetwork::send(SyncRequest request, std::stop_token stop)
{
    requests.push_back(request);
    const auto exchange = std::make_shared<Exchange>();
    exchange->request = std::move(request);
    m_waiting.push_back(exchange);
    const std::stop_callback cancel(stop, [this, exchange] {
        forget(exchange.get());
        exchange->failure = std::make_exception_ptr(Cancelled());
        exchange->sleeper.resume();
    });
    Wait wait{exchange->sleeper};
    co_await wait;
    if (exchange->failure)
        std::rethrow_exception(exchange->failure);
    co_return exchange->response;
}

const SyncRequest &FakeNetwork::waiting() const
{
    return m_waiting.front()->request;
}

void FakeNetwork::answer(const SyncResponse &response)
{
    const auto exchange = m_waiting.front();
    m_waiting.pop_front();
    exchange->response = response;
    exchange->sleeper.resume();
}

void FakeNetwork::lose()
{
    const auto exchange = m_waiting.front();
    m_waiting.pop_front();
    exchange->failure =
        std::make_exception_ptr(TransportError(TransportError::Kind::lost, u"lost on the way"_s));
    exchange->sleeper.resume();
}

void FakeNetwork::serve(AnsweringServer &server)
{
    while (isWaiting())
        answer(server.answer(waiting()));
}

void FakeNetwork::forget(const Exchange *exchange)
{
    std::erase_if(m_waiting, [exchange](const auto &waiting) { return waiting.get() == exchange; });
}

} // namespace nimbrelle
