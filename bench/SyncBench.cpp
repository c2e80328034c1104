#include "Ratios.h"
#include "SampleNotebook.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/RecordFile.h"
#include "notebook/LearningLog.h"
#include "notebook/WordStore.h"
#include "sync/BundleForm.h"
#include "sync/SyncMerge.h"
#include "sync/SyncService.h"

#include <QFileInfo>
#include <QTemporaryDir>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace nimbrelle::bench;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"});

QStringList logOf(const QList<WordEntry> &words)
{
    QStringList log;
    for (const WordEntry &word : words) {
        for (int i = 0; i < 4; ++i) {
            const LearningLog::Event event{.time = now + std::chrono::seconds{log.size()},
                .kind = caseText(LogKind::review),
                .word = word.headword,
                .detail = u"good"_s};
            log.append(QString::fromUtf8(encode(event, TextForm::line).value_or(QByteArray())));
        }
    }
    return log;
}

SyncBundle bundleOf(qsizetype count)
{
    SyncBundle bundle;
    bundle.words = sampleWords(count, now);
    bundle.log = logOf(bundle.words);
    return BundleForm::normalized(bundle);
}

/// What another device made of it: every third word went on, every tenth was saved there by itself.
SyncBundle changed(SyncBundle bundle)
{
    for (qsizetype i = 0; i < bundle.words.size(); ++i) {
        WordEntry &word = bundle.words[i];
        if (i % 10 == 0) {
            word.id = QUuid::createUuidV5(word.id, QByteArray("other device"));
            word.createdAt += std::chrono::seconds{60};
        } else if (i % 3 == 0) {
            ++word.lookupCount;
            word.stateAt = now;
            Example example;
            example.id = QUuid::createUuidV5(word.id, QByteArray("another sentence"));
            example.sentence = u"Another sentence with %1 in it."_s.arg(word.headword);
            example.addedAt = now;
            word.examples.append(example);
        }
    }
    return bundle;
}

struct Pair {
    explicit Pair(qsizetype count) : a(bundleOf(count)), b(changed(a)), merged(SyncMerge::merge(a, b)) { }

    static const Pair &of(benchmark::State &state)
    {
        static std::map<int64_t, std::unique_ptr<Pair>> all;
        auto &pair = all[state.range(0)];
        if (!pair)
            pair = std::make_unique<Pair>(state.range(0));
        state.counters["MB"] = static_cast<double>(BundleForm::json(pair->merged).size()) / 1e6;
        return *pair;
    }

    SyncBundle a, b, merged;
};

void merge(benchmark::State &state)
{
    const Pair &pair = Pair::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(SyncMerge::merge(pair.a, pair.b));
}

void encodeAndHash(benchmark::State &state)
{
    const Pair &pair = Pair::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(BundleForm::hash(pair.merged));
}

// What an honest change costs beside its text: the check for a loss, and what is remembered for the next one.
void rememberAndCheck(benchmark::State &state)
{
    const Pair &pair = Pair::of(state);
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"sync-known.json"_s);
    for (auto _ : state) {
        writeRecordFile(path, SyncKnown::of(pair.merged, u"hash"_s));
        benchmark::DoNotOptimize(readRecordFile<SyncKnown>(path)->isHeldBy(pair.merged, now));
    }
    state.counters["MB"] = static_cast<double>(QFileInfo(path).size()) / 1e6;
}

/// A server on which nothing ever moves.
class QuietServer final : public SyncTransport {
public:
    QCoro::Task<SyncResponse> send(SyncRequest request, std::stop_token) override
    {
        SyncResponse response;
        response.status = request.ifNoneMatch ? 304 : 404;
        if (request.method == SyncRequest::Method::put)
            response = {200, "\"1\"", {}};
        co_return response;
    }
};

struct QuietDevice {
    explicit QuietDevice(qsizetype count)
    {
        store.applySync(bundleOf(count));
        AppConfig connected;
        connected.syncServer = connected.syncToken = connected.syncPin = u"x"_s;
        config.setConfig(connected);
        sync.syncNow();
    }

    QTemporaryDir directory;
    AppPaths paths{directory.path()};
    Clock &clock = SystemClock::shared();
    ConfigStore config{paths, clock};
    LearningLog log{paths, clock};
    WordStore store{paths, clock, config, log};
    SyncService sync{
        store, config, paths, clock, [](const SyncLink &) { return std::make_unique<QuietServer>(); }};
};

void quietRound(benchmark::State &state)
{
    QuietDevice device(state.range(0));
    for (auto _ : state)
        device.sync.syncNow();
    if (device.sync.lastError() || device.sync.busy())
        state.SkipWithError("the round failed");
}

// What a quiet round can't do without: the log, one text of the notebook with its hash, and the state.
void quietFloor(benchmark::State &state)
{
    QuietDevice device(state.range(0));
    for (auto _ : state) {
        SyncBundle bundle = device.store.snapshot();
        benchmark::DoNotOptimize(BundleForm::hash(bundle));
        writeRecordFile(device.paths.syncState, SyncState{});
    }
}

BENCHMARK(merge)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeAndHash)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(rememberAndCheck)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(quietRound)->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(quietFloor)->Arg(2000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    return runWithRatios(argc, argv,
        {
            {"merge of two 10,000-word bundles / one encode and hash", "merge/10000", {"encodeAndHash/10000"},
                3.0},
            {"memory of 10,000 words, written, read and checked / one encode and hash",
                "rememberAndCheck/10000", {"encodeAndHash/10000"}, 0.5},
            {"quiet round on 2,000 words / log, encode, hash and state", "quietRound/2000/real_time",
                {"quietFloor/2000/real_time"}, 1.2},
        });
}
