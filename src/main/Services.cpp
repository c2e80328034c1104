#include "main/Services.h"

#include "ai/DeepSeekClient.h"
#include "sync/PinnedTransport.h"

namespace nimbrelle {

Services &Services::shared()
{
    static Services services;
    return services;
}

void Services::end()
{
    DataWriter::shared().retry(); // the last chance
    m_wordImport.reset();
    m_coachHistory.reset();
    m_sync.reset();
    m_backups.reset();
    m_background.reset();
    m_words.reset();
    m_connections.reset();
}

ProviderConnections &Services::connections()
{
    if (!m_connections)
        m_connections = std::make_unique<ProviderConnections>(clock());
    return *m_connections;
}

WordStore &Services::words()
{
    if (!m_words)
        m_words = std::make_unique<WordStore>(paths(), clock(), config(), log(),
            [this](const WordEntry &word, const QStringList &knownWords, const QStringList &interests) {
                return makeAI()->mnemonic(word, knownWords, interests);
            });
    return *m_words;
}

Background &Services::background()
{
    if (!m_background)
        m_background = std::make_unique<ThreadBackground>();
    return *m_background;
}

LocalBackups &Services::backups()
{
    if (!m_backups)
        m_backups = std::make_unique<LocalBackups>(paths(), clock(), background());
    return *m_backups;
}

SyncService &Services::sync()
{
    if (!m_sync)
        m_sync = std::make_unique<SyncService>(words(), config(), paths(), clock(), &PinnedTransport::open,
            DataWriter::shared(), [this] { return backups().beforeSync(); });
    return *m_sync;
}

CoachHistory &Services::coachHistory()
{
    if (!m_coachHistory)
        m_coachHistory = std::make_unique<CoachHistory>(paths(), clock());
    return *m_coachHistory;
}

WordImport &Services::wordImport()
{
    if (!m_wordImport)
        m_wordImport = std::make_unique<WordImport>(words(), config(), paths(), clock(), newAI());
    return *m_wordImport;
}

std::unique_ptr<AIClient> Services::makeAI()
{
    return newAI()(config().config());
}

AIClientFactory Services::newAI()
{
    return [&connections = connections()](
               const AppConfig &config) { return std::make_unique<DeepSeekClient>(config, connections); };
}

void Services::prepareAI()
{
    DeepSeekClient(config().config(), connections()).prepare();
}

} // namespace nimbrelle
