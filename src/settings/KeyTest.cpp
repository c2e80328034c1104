#include "settings/KeyTest.h"

#include "frame/ConfigStore.h"
#include "frame/Failure.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// All of the settings that an answer depends on.
QStringList connectionSettings(const ConfigStore &config)
{
    return {config.config().apiKey, config.config().baseURL, config.config().model};
}

} // namespace

KeyTest::KeyTest(const ConfigStore &config, AIClientFactory makeClient)
    : m_config(config), m_makeClient(std::move(makeClient)), m_tested(connectionSettings(config))
{
    connect(&config, &ConfigStore::configChanged, this, &KeyTest::forgetIfOther);
}

/// A result tells nothing of another key or address.
void KeyTest::forgetIfOther()
{
    if (m_tested == connectionSettings(m_config))
        return;
    m_tested = connectionSettings(m_config);
    if (!m_isRunning && !m_result)
        return;
    m_task.cancel();
    m_isRunning = false;
    m_result.reset();
    emit changed();
}

bool KeyTest::canStart() const
{
    return !m_isRunning && !m_config.config().apiKey.isEmpty();
}

void KeyTest::start()
{
    if (!canStart())
        return;
    m_isRunning = true;
    m_result.reset();
    emit changed();
    run(m_makeClient(m_config.config()), m_task.renew());
}

QCoro::Task<> KeyTest::run(std::unique_ptr<AIClient> client, std::stop_token stop)
{
    Result result;
    try {
        const Explanation explanation = co_await client->explain(
            u"reluctant"_s, u"I was reluctant to post this, but here we go."_s, stop);
        result = Result{true, u"成功：reluctant = "_s + explanation.meaningZh};
    } catch (const std::exception &error) {
        result = Result{false, Failure::shownText(error)};
    }
    if (stop.stop_requested())
        co_return;
    m_isRunning = false;
    m_result = std::move(result);
    emit changed();
}

} // namespace nimbrelle
