#pragma once

#include "ai/AIClient.h"
#include "ai/ProviderConnections.h"
#include "coach/CoachHistory.h"
#include "export/LocalBackups.h"
#include "export/WordImport.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "notebook/LearningLog.h"
#include "notebook/WordStore.h"
#include "platform/linux/ThreadBackground.h"
#include "sync/SyncService.h"

#include <memory>

namespace nimbrelle {

/// The composition root: makes each process-wide object at its first use and ties them together. Everything
/// else gets what it needs through its constructor.
class Services {
public:
    static Services &shared();

    /// Lets go of what was made here, while the application object and the stores below still stand. To be
    /// called when the event loop has ended; nothing may be asked for afterwards.
    void end();

    const AppPaths &paths() { return AppPaths::shared(); }
    Clock &clock() { return SystemClock::shared(); }
    ConfigStore &config() { return ConfigStore::shared(); }
    LearningLog &log() { return LearningLog::shared(); }
    ProviderConnections &connections();
    WordStore &words();
    Background &background();
    LocalBackups &backups();
    SyncService &sync();
    CoachHistory &coachHistory();
    WordImport &wordImport();
    /// A client made from the settings of this moment.
    std::unique_ptr<AIClient> makeAI();
    /// For whoever asks the AI again and again.
    AIClientFactory newAI();
    /// The AI is likely to be asked with the settings of this moment.
    void prepareAI();

private:
    Services() = default;

    std::unique_ptr<ProviderConnections> m_connections;
    std::unique_ptr<WordStore> m_words;
    std::unique_ptr<ThreadBackground> m_background;
    std::unique_ptr<LocalBackups> m_backups;
    std::unique_ptr<SyncService> m_sync;
    std::unique_ptr<CoachHistory> m_coachHistory;
    std::unique_ptr<WordImport> m_wordImport;
};

} // namespace nimbrelle
