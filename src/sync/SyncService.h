#pragma once

#include "frame/DataWriter.h"
#include "frame/Recheck.h"
#include "sync/SyncKnown.h"
#include "sync/SyncLink.h"
#include "sync/SyncState.h"
#include "sync/SyncTransport.h"

#include <QObject>

namespace nimbrelle {

class AppPaths;
class Clock;
class ConfigStore;
class SyncProtocol;
class WordStore;
struct SyncReading;

/// Keeps this device's notebook and the server's one document equal. Main thread only.
class SyncService : public QObject {
    Q_OBJECT

public:
    /// What is to be done before each round; it must not fail, for the round waits for it.
    using Preparation = std::function<QCoro::Task<>()>;

    /// Reads when the last exchange was, and does nothing else before start() or a call.
    SyncService(WordStore &store, ConfigStore &config, const AppPaths &paths, Clock &clock,
        SyncTransport::Factory connect, DataWriter &writer = DataWriter::shared(), Preparation prepare = {});
    /// Stops the run under way; what it has applied stays.
    ~SyncService() override;

    /// A round now, one every ten minutes, and one after each change of the notebook or of a study setting.
    void start();

    /// A round when `after` has passed with no further call.
    void syncSoon(std::chrono::seconds after);

    /// One round. True also when there is nothing to do: not connected, or a round is under way.
    QCoro::Task<bool> syncNow();

    /// A round that begins after the call: one under way, which may have read before the last change, is let
    /// end first.
    QCoro::Task<bool> syncAfresh();

    /// Absent when the server answers to the link; else what to tell the user. Touches no state.
    static QCoro::Task<std::optional<QString>> test(SyncLink link, SyncTransport::Factory connect);

    bool busy() const { return m_busy; }
    /// What to tell the user of the last round; absent after a good one.
    const std::optional<QString> &lastError() const { return m_lastError; }
    const std::optional<QString> &lastErrorDetail() const { return m_lastErrorDetail; }
    const std::optional<Timestamp> &lastSyncAt() const { return m_lastSyncAt; }

signals:
    void changed(); ///< of busy, lastError or lastSyncAt

private:
    /// Where a reading of the server leaves this device.
    struct Settled {
        qint64 version = 0; ///< of the server's document
        QString localHash; ///< what to remember once the server holds all of this
        QByteArray unwritten; ///< what the server lacks; empty when it holds all
        std::optional<SyncKnown> known; ///< to be remembered as well; absent when it is as it was
    };

    QCoro::Task<> runOnce(SyncLink link, std::stop_token stop);
    QCoro::Task<Settled> readAndSettle(SyncProtocol &server, const SyncState &state, std::stop_token stop);
    std::optional<Settled> settleUnchanged(const SyncState &state) const;
    Settled settleMerged(const SyncReading &reading);
    QString apply(const SyncBundle &bundle);
    SyncState loadState(const QString &server) const;
    bool hasAllThatWasKnown(const SyncState &state, const SyncBundle &local) const;
    void saveState(SyncState state, qint64 version, const Settled &settled) const;

    QCoro::Task<> syncAfter(std::chrono::seconds delay, std::stop_token stop);
    void setBusy(bool busy);

    WordStore &m_store;
    ConfigStore &m_config;
    const AppPaths &m_paths;
    Clock &m_clock;
    const SyncTransport::Factory m_connect;
    DataWriter &m_writer;
    const Preparation m_prepare;

    bool m_busy = false;
    bool m_applying = false; ///< the store is taking over a merge, which must not start another round
    std::optional<QString> m_lastError;
    std::optional<QString> m_lastErrorDetail;
    std::optional<Timestamp> m_lastSyncAt;
    Recheck m_rounds;
    TaskSlot m_soon;
    TaskSlot m_run;
};

} // namespace nimbrelle
