#include "sync/SyncConnection.h"

#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "sync/SyncService.h"

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr std::chrono::milliseconds copiedFor{2000};

} // namespace

SyncConnection::SyncConnection(ConfigStore &config, SyncService &service, Clock &clock,
    SyncTransport::Factory connect, std::function<void(const QString &)> copy)
    : m_config(config)
    , m_service(service)
    , m_clock(clock)
    , m_connect(std::move(connect))
    , m_copy(std::move(copy))
{
}

std::optional<SyncLink> SyncConnection::link() const
{
    return SyncLink::fromConfig(m_config.config());
}

void SyncConnection::connectTo(const QString &code)
{
    if (m_isConnecting || code.isEmpty())
        return;
    const auto link = SyncLink::fromText(code);
    m_isConnecting = link.has_value();
    m_message.reset();
    if (!link)
        m_message = u"这不是同步码。同步码以 nimbrelle://sync? 开头"_s;
    emit changed();
    if (link)
        tryLink(*link, m_trying.renew());
}

QCoro::Task<> SyncConnection::tryLink(SyncLink link, std::stop_token stop)
{
    const std::optional<QString> failure = co_await SyncService::test(link, m_connect);
    if (stop.stop_requested())
        co_return;
    m_isConnecting = false;
    m_message = failure;
    if (!failure)
        store(link);
    emit changed();
    if (failure)
        co_return;
    emit connected();
    syncNow();
}

void SyncConnection::store(const SyncLink &link)
{
    AppConfig config = m_config.config();
    config.syncServer = link.server;
    config.syncToken = link.token;
    config.syncPin = link.pin;
    m_config.setConfig(config);
}

void SyncConnection::disconnectFromServer()
{
    store({});
}

void SyncConnection::syncNow()
{
    m_service.syncNow();
}

void SyncConnection::copyCode()
{
    const auto link = this->link();
    if (!link)
        return;
    m_copy(link->text());
    m_isCopied = true;
    emit changed();
    fallBack(m_fallingBack.renew());
}

QCoro::Task<> SyncConnection::fallBack(std::stop_token stop)
{
    co_await m_clock.sleep(copiedFor, stop);
    if (stop.stop_requested())
        co_return;
    m_isCopied = false;
    emit changed();
}

} // namespace nimbrelle
