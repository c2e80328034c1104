#include "shell/KeyTest.h"

#include "frame/ConfigStore.h"
#include "frame/Failure.h"

namespace nimbrelle {

namespace {

QString textOf(const std::exception &error)
{
    const auto *ours = dynamic_cast<const Failure *>(&error);
    return ours ? ours->text() : QString::fromUtf8(error.what());
}

bool asksAlike(const AppConfig &one, const AppConfig &other)
{
    return one.apiKey == other.apiKey && one.baseURL == other.baseURL && one.model == other.model;
}

} // namespace

KeyTest::KeyTest(const ConfigStore &config, AIClientFactory makeClient)
    : m_config(config), m_makeClient(std::move(makeClient))
{
    connect(&config, &ConfigStore::configChanged, this, &KeyTest::forgetOther);
}

bool KeyTest::canStart() const
{
    return !m_isRunning && !m_config.config().apiKey.isEmpty();
}

void KeyTest::start()
{
    if (!canStart())
        return;
    m_tested = m_config.config();
    m_isRunning = true;
    m_result.reset();
    emit changed();
    run(m_makeClient(m_config.config()), m_task.renew());
}

/// What was told of other settings says nothing of these.
void KeyTest::forgetOther()
{
    if ((!m_isRunning && !m_result) || asksAlike(m_tested, m_config.config()))
        return;
    m_isRunning = false;
    m_result.reset();
    m_task.cancel();
    emit changed();
}

QCoro::Task<> KeyTest::run(std::unique_ptr<AIClient> client, std::stop_token stop)
{
    Result result;
    try {
        const Explanation explanation = co_await client->explain(QStringLiteral("reluctant"),
            QStringLiteral("I was reluctant to post this, but here we go."), stop);
        result = Result{true, QStringLiteral("成功：reluctant = ") + explanation.meaningZh};
    } catch (const std::exception &error) {
        result = Result{false, textOf(error)};
    }
    if (stop.stop_requested())
        co_return;
    m_isRunning = false;
    m_result = std::move(result);
    emit changed();
}

} // namespace nimbrelle
