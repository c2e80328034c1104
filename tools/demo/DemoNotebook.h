#pragma once

#include "ai/DeepSeekClient.h"
#include "ai/ProviderConnections.h"
#include "frame/AppPaths.h"
#include "frame/ConfigStore.h"
#include "notebook/LearningLog.h"
#include "notebook/WordStore.h"
#include "support/ManualClock.h"

namespace nimbrelle {

/// The notebook of somebody who has read English on the side for four weeks, lived through day by day with
/// the program's own store and the provider that the directory's settings name. So nothing in it is invented
/// but what was read and how well it was remembered.
class DemoNotebook {
public:
    DemoNotebook(const QString &directory, Timestamp now);

    /// Fills the directory, up to words that wait for a round today. Throws what the provider throws.
    void fill();

private:
    void readOn(qint64 daysAgo);
    void reviewOn(qint64 daysAgo);
    void spellOn(qint64 daysAgo);
    void practiseSpelling(const QString &query);
    void keepNotes();
    void wantToLearn(const QString &headword);
    void findMemoryAid(const QString &headword);
    QUuid idOf(const QString &headword) const;

    const Timestamp m_now;
    ManualClock m_clock;
    AppPaths m_paths;
    ConfigStore m_config;
    LearningLog m_log;
    ProviderConnections m_connections{m_clock};
    DeepSeekClient m_client;
    WordStore m_words;
};

} // namespace nimbrelle
