#include "sync/SyncService.h"

#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/RecordFile.h"
#include "frame/Text.h"
#include "notebook/WordStore.h"
#include "sync/BundleForm.h"
#include "sync/SyncError.h"
#include "sync/SyncMerge.h"
#include "sync/SyncProtocol.h"

#include <QCoro/QCoroSignal>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto roundPeriod = 600s;
constexpr int mostAttempts = 4;
constexpr qint64 unknownVersion = -1; ///< makes the next read fetch the document; never on disk

struct Document {
    SyncBundle bundle;
    QByteArray json;
    QString hash;
};

// Never without a text: an empty one would count as the server's new document.
Document documentOf(const SyncBundle &bundle)
{
    const QByteArray json = BundleForm::json(bundle);
    if (json.isEmpty())
        throw Failure(u"这台设备的单词本写不出来"_s);
    return {.bundle = bundle, .json = json, .hash = BundleForm::hashOfJson(json)};
}

} // namespace

SyncService::SyncService(WordStore &store, ConfigStore &config, const AppPaths &paths, Clock &clock,
    SyncTransport::Factory connect, DataWriter &writer, Preparation prepare)
    : m_store(store)
    , m_config(config)
    , m_paths(paths)
    , m_clock(clock)
    , m_connect(std::move(connect))
    , m_writer(writer)
    , m_prepare(std::move(prepare))
    , m_rounds(clock, roundPeriod)
{
    if (const auto state = readRecordFile<SyncState>(m_paths.syncState))
        m_lastSyncAt = state->lastSyncAt;
}

SyncService::~SyncService() = default;

void SyncService::start()
{
    connect(&m_store, &WordStore::changing, this, [this] {
        if (!m_applying)
            syncSoon(5s);
    });
    connect(&m_config, &ConfigStore::studySettingsChanged, this, [this] { syncSoon(5s); });
    connect(&m_rounds, &Recheck::due, this, [this] { syncNow(); });
    m_rounds.start();
    syncNow();
}

void SyncService::syncSoon(std::chrono::seconds after)
{
    syncAfter(after, m_soon.renew());
}

QCoro::Task<> SyncService::syncAfter(std::chrono::seconds delay, std::stop_token stop)
{
    co_await m_clock.sleep(delay, stop);
    if (!stop.stop_requested())
        syncNow();
}

QCoro::Task<bool> SyncService::syncNow()
{
    const auto link = SyncLink::fromConfig(m_config.config());
    if (!link || m_busy)
        co_return true;
    setBusy(true);
    try {
        co_await runOnce(*link, m_run.renew());
        m_lastError.reset();
        m_lastErrorDetail.reset();
        m_lastSyncAt = m_clock.now();
    } catch (const Cancelled &) {
        co_return false;
    } catch (const std::exception &error) {
        m_lastError = describe(error);
        m_lastErrorDetail = withoutSecret(detailOf(error), link->token);
    }
    setBusy(false);
    co_return !m_lastError;
}

QCoro::Task<bool> SyncService::syncAfresh()
{
    while (m_busy)
        co_await qCoro(this, &SyncService::changed);
    co_return co_await syncNow();
}

QCoro::Task<std::optional<QString>> SyncService::test(SyncLink link, SyncTransport::Factory connect)
{
    const std::unique_ptr<SyncTransport> transport = connect(link);
    SyncProtocol server(*transport);
    std::optional<QString> message;
    try {
        co_await server.ping({});
    } catch (const std::exception &error) {
        message = describe(error);
    }
    co_return message;
}

QCoro::Task<> SyncService::runOnce(SyncLink link, std::stop_token stop)
{
    if (m_prepare) {
        co_await m_prepare();
        if (stop.stop_requested())
            throw Cancelled();
    }
    const std::unique_ptr<SyncTransport> transport = m_connect(link);
    SyncProtocol server(*transport);
    SyncState state = loadState(link.server);
    for (int attempt = 1;; ++attempt) {
        const Settled settled = co_await readAndSettle(server, state, stop);
        if (settled.unwritten.isEmpty()) {
            saveState(state, settled.version, settled);
            co_return;
        }
        const auto version = co_await server.write(settled.version, settled.unwritten, stop);
        if (version) {
            saveState(state, *version, settled);
            co_return;
        }
        if (attempt == mostAttempts)
            throw SyncError::busy();
        state.version = unknownVersion;
    }
}

// A device that has lost something reads the whole document, so that a merge brings it back.
QCoro::Task<SyncService::Settled> SyncService::readAndSettle(
    SyncProtocol &server, const SyncState &state, std::stop_token stop)
{
    SyncReading reading = co_await server.read(state.version, stop);
    if (reading.kind == SyncReading::Kind::unchanged) {
        const auto settled = settleUnchanged(state);
        if (settled)
            co_return *settled;
        reading = co_await server.read(unknownVersion, stop);
    }
    co_return settleMerged(reading);
}

// No merge is needed: the server's document is the one that this device merged last. The text of a snapshot
// is that of its normalized form. Absent when this device has lost some of that document.
std::optional<SyncService::Settled> SyncService::settleUnchanged(const SyncState &state) const
{
    const Document local = documentOf(m_store.snapshot());
    if (local.hash == state.hash)
        return Settled{.version = state.version, .localHash = local.hash};
    if (!hasAllThatWasKnown(state, local.bundle))
        return std::nullopt;
    return Settled{.version = state.version,
        .localHash = local.hash,
        .unwritten = local.json,
        .known = SyncKnown::of(local.bundle, local.hash)};
}

// Also false where nothing was remembered, by an earlier version of the program or for another document.
bool SyncService::hasAllThatWasKnown(const SyncState &state, const SyncBundle &local) const
{
    const auto known = readRecordFile<SyncKnown>(m_paths.syncKnown);
    return known && known->hash == state.hash && known->isHeldBy(local, m_clock.now());
}

// Where the copies of one id tie, a merge keeps the first side's list orders, and two devices that each put
// their own side first would write in turn for ever. So when the server's document already holds everything,
// it is taken over as it is. What is remembered is the hash of the local document as it stands now: counters
// of another day stay out of it, and what changes from here on belongs to the next round.
SyncService::Settled SyncService::settleMerged(const SyncReading &reading)
{
    const SyncBundle local = BundleForm::normalized(m_store.snapshot());
    const QString localHash = BundleForm::hash(local);
    Document merged = documentOf(SyncMerge::merge(local, reading.document));
    if (reading.kind == SyncReading::Kind::document && merged.hash != reading.hash) {
        const Document takenOver = documentOf(SyncMerge::merge(reading.document, local));
        if (takenOver.hash == reading.hash)
            merged = takenOver;
    }
    const QString hash = merged.hash == localHash ? localHash : apply(merged.bundle);
    // Not from the store, which may have failed to write it.
    SyncBundle agreed = merged.bundle;
    agreed.stats = m_store.stats();
    return {.version = reading.version,
        .localHash = hash,
        .unwritten = merged.hash == reading.hash ? QByteArray() : merged.json,
        .known = SyncKnown::of(agreed, hash)};
}

// Returns the hash of the local document as it stands afterwards.
QString SyncService::apply(const SyncBundle &bundle)
{
    {
        const QScopedValueRollback applying(m_applying, true);
        m_store.applySync(bundle);
    }
    return BundleForm::hash(m_store.snapshot());
}

SyncState SyncService::loadState(const QString &server) const
{
    const auto state = readRecordFile<SyncState>(m_paths.syncState);
    return state && state->server == server ? *state : SyncState{.server = server};
}

void SyncService::saveState(SyncState state, qint64 version, const Settled &settled) const
{
    if (settled.known)
        writeRecordFile(m_paths.syncKnown, *settled.known, FileMode::ordinary, m_writer);
    state.version = version;
    state.hash = settled.localHash;
    state.lastSyncAt = m_clock.now();
    writeRecordFile(m_paths.syncState, state, FileMode::ordinary, m_writer);
}

void SyncService::setBusy(bool busy)
{
    m_busy = busy;
    emit changed();
}

} // namespace nimbrelle
