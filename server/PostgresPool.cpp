#include "server/PostgresPool.h"

namespace nimbrelle::server {

using Kind = StoreFailure::Kind;

PostgresPool::PostgresPool(Settings settings, Prepare prepare)
    : m_settings(std::move(settings)), m_prepare(std::move(prepare))
{
    m_idle.reserve(m_settings.connections); // so that giving back can't fail
}

std::unique_ptr<PostgresConnection> PostgresPool::take()
{
    reserve();
    try {
        while (auto connection = takeIdle()) {
            if (connection->isUsable())
                return connection;
        }
        return connect();
    } catch (...) {
        giveBack(nullptr);
        throw;
    }
}

void PostgresPool::reserve()
{
    std::unique_lock lock(m_mutex);
    const auto isFree = [this] { return m_inUse < m_settings.connections; };
    if (!m_returned.wait_for(lock, m_settings.waitTimeout, isFree))
        throw StoreFailure(Kind::unavailable, "all connections to the database are in use");
    ++m_inUse;
}

std::unique_ptr<PostgresConnection> PostgresPool::takeIdle()
{
    const std::lock_guard lock(m_mutex);
    if (m_idle.empty())
        return nullptr;
    auto connection = std::move(m_idle.back());
    m_idle.pop_back();
    return connection;
}

std::unique_ptr<PostgresConnection> PostgresPool::connect()
{
    refuseWhileAway();
    try {
        auto connection = attempt();
        const std::lock_guard lock(m_mutex);
        m_lastFailure.clear();
        return connection;
    } catch (const StoreFailure &failure) {
        const std::lock_guard lock(m_mutex);
        if (failure.kind() == Kind::unavailable) {
            m_lastFailure = failure.what();
            m_retryAt = m_settings.now() + m_settings.retryAfter;
        }
        throw;
    }
}

// An attempt may take seconds when the other machine is gone: one at a time is enough then, and the other
// threads answer their requests at once.
void PostgresPool::refuseWhileAway()
{
    const std::lock_guard lock(m_mutex);
    if (m_lastFailure.empty())
        return;
    if (m_settings.now() < m_retryAt)
        throw StoreFailure(Kind::unavailable, m_lastFailure);
    m_retryAt = m_settings.now() + m_settings.attemptTime;
}

std::unique_ptr<PostgresConnection> PostgresPool::attempt()
{
    auto connection = std::make_unique<PostgresConnection>(m_settings.url, m_settings.statementTimeout);
    m_prepare(*connection);
    return connection;
}

void PostgresPool::giveBack(std::unique_ptr<PostgresConnection> connection)
{
    const bool usable = connection && connection->isUsable() && !connection->hasGrown();
    const std::lock_guard lock(m_mutex);
    --m_inUse;
    if (usable)
        m_idle.push_back(std::move(connection));
    m_returned.notify_one();
}

} // namespace nimbrelle::server
