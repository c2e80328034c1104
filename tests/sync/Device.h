#pragma once

#include "frame/AppPaths.h"
#include "frame/ConfigStore.h"
#include "notebook/LearningLog.h"
#include "notebook/WordStore.h"
#include "support/ManualClock.h"
#include "sync/FakeNetwork.h"
#include "sync/SyncService.h"

#include <QTemporaryDir>

#include <random>

namespace nimbrelle {

/// Numbers that a seed fixes on every machine.
class Random {
public:
    explicit Random(quint32 seed) : m_engine(seed) { }

    /// 0 to `count` - 1.
    quint32 below(quint32 count) { return static_cast<quint32>(m_engine()) % count; }
    bool oneIn(quint32 count) { return below(count) == 0; }
    template <class List> const auto &from(const List &list)
    {
        return *std::next(std::begin(list), below(static_cast<quint32>(std::size(list))));
    }
    QUuid id();

private:
    std::mt19937 m_engine;
};

/// A whole device in a directory of its own, up to the network: clock, settings, log, notebook and sync.
class Device {
public:
    explicit Device(quint32 seed = 1, DataWriter &writer = DataWriter::shared());

    WordStore &store() { return *m_running->store; }
    ConfigStore &config() { return m_running->config; }
    LearningLog &log() { return m_running->log; }
    SyncService &sync() { return *m_running->sync; }

    /// Ends the process in the middle of whatever it does, and starts it again from its files.
    void restart();
    /// Gives the answer of syncNow when it comes; false while none has.
    std::shared_ptr<std::optional<bool>> startSync();
    /// A whole round, with all that it asks of `server`.
    bool syncWith(AnsweringServer &server);
    SyncBundle document() { return store().snapshot(); }

    QTemporaryDir directory;
    ManualClock clock;
    const AppPaths paths;
    FakeNetwork network;
    std::optional<WordEntry> deleted; ///< the last word that can be taken back

private:
    struct Running {
        explicit Running(Device &device);

        ConfigStore config;
        LearningLog log;
        std::unique_ptr<WordStore> store;
        std::unique_ptr<SyncService> sync;
    };

    void connectToServer();

    DataWriter &m_writer;
    Random m_ids;
    std::unique_ptr<Running> m_running;
};

} // namespace nimbrelle
