#pragma once

#include "ai/AIClient.h"
#include "frame/TaskSlot.h"

#include <QObject>

namespace nimbrelle {

class ConfigStore;

/// Asks the provider for one word, to show whether the key and the address are good. Changes no setting.
/// Main thread only.
class KeyTest : public QObject {
    Q_OBJECT

public:
    struct Result {
        bool isGood = false;
        QString text;

        bool operator==(const Result &) const = default;
    };

    KeyTest(const ConfigStore &config, AIClientFactory makeClient);

    bool isRunning() const { return m_isRunning; }
    /// False while a test runs or without a key; start() does nothing then.
    bool canStart() const;
    void start();
    /// Of the last test; absent before the first, while one runs, and once the key, the address or the model
    /// is another.
    const std::optional<Result> &result() const { return m_result; }

signals:
    void changed();

private:
    void forgetIfOther();
    QCoro::Task<> run(std::unique_ptr<AIClient> client, std::stop_token stop);

    const ConfigStore &m_config;
    const AIClientFactory m_makeClient;
    QStringList m_tested; // the settings that the result is of
    bool m_isRunning = false;
    std::optional<Result> m_result;
    TaskSlot m_task;
};

} // namespace nimbrelle
