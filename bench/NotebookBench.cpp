#include "QtJsonFloor.h"
#include "Ratios.h"
#include "SampleNotebook.h"
#include "frame/RecordFile.h"
#include "notebook/SlotPlan.h"
#include "review/FSRS.h"

#include <QJsonDocument>
#include <QTemporaryDir>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace nimbrelle::bench;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"});

/// One notebook on disk for each size, made at its first use.
struct Stored {
    explicit Stored(qsizetype count)
        : words(sampleWords(count, now)), path(directory.filePath(u"words.json"_s))
    {
        writeRecordFile(path, words);
        bytes = *readFile(path);
    }

    static Stored &of(benchmark::State &state)
    {
        static std::map<int64_t, std::unique_ptr<Stored>> all;
        auto &stored = all[state.range(0)];
        if (!stored)
            stored = std::make_unique<Stored>(state.range(0));
        state.counters["MB"] = static_cast<double>(stored->bytes.size()) / 1e6;
        return *stored;
    }

    QTemporaryDir directory;
    QList<WordEntry> words;
    QString path;
    QByteArray bytes;
};

void load(benchmark::State &state)
{
    const Stored &stored = Stored::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(readRecordFile<QList<WordEntry>>(stored.path));
}

void loadRaw(benchmark::State &state)
{
    const Stored &stored = Stored::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(readFile(stored.path));
}

void qtParse(benchmark::State &state)
{
    const Stored &stored = Stored::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(*readFile(stored.path)));
}

void qtParseToRecords(benchmark::State &state)
{
    const Stored &stored = Stored::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(wordsByQtJson(*readFile(stored.path)));
}

void save(benchmark::State &state)
{
    const Stored &stored = Stored::of(state);
    for (auto _ : state)
        writeRecordFile(stored.path, stored.words);
}

void saveRaw(benchmark::State &state)
{
    const Stored &stored = Stored::of(state);
    for (auto _ : state)
        replaceFile(stored.path, stored.bytes);
}

void encodeOnly(benchmark::State &state)
{
    const Stored &stored = Stored::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(encode(stored.words, TextForm::file));
}

void qtPrint(benchmark::State &state)
{
    const QJsonDocument document = QJsonDocument::fromJson(Stored::of(state).bytes);
    for (auto _ : state)
        benchmark::DoNotOptimize(document.toJson(QJsonDocument::Indented));
}

void planOfSlots(benchmark::State &state)
{
    QList<WordEntry> words = Stored::of(state).words;
    AppConfig config;
    config.learningSlots = words.size();
    for (auto _ : state)
        benchmark::DoNotOptimize(planSlots(words, config, 0, 0, now));
}

void fsrsReview(benchmark::State &state)
{
    const ReviewState start = FSRS::review({}, Rating::good, now, 0.9);
    for (auto _ : state)
        benchmark::DoNotOptimize(FSRS::review(start, Rating::good, start.due, 0.9));
}

BENCHMARK(load)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(loadRaw)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(qtParse)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(qtParseToRecords)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(save)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(saveRaw)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(encodeOnly)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(qtPrint)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(planOfSlots)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(fsrsReview);

} // namespace

int main(int argc, char **argv)
{
    return runWithRatios(argc, argv,
        {
            {"load of 10,000 words / Qt's bare parse", "load/10000", {"qtParse/10000"}, 1.7},
            {"load of 10,000 words / Qt's parse to records", "load/10000", {"qtParseToRecords/10000"}, 1.0},
            {"save of 10,000 words / raw write and flush", "save/10000/real_time",
                {"saveRaw/10000/real_time"}, 3.0},
            {"plan of 10,000 words / plan of 1,000", "planOfSlots/10000", {"planOfSlots/1000"}, 14.0},
        });
}
