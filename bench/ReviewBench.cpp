#include "Ratios.h"
#include "SampleNotebook.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/RecordFile.h"
#include "notebook/LearningLog.h"
#include "notebook/WordStore.h"

#include <QFile>
#include <QTemporaryDir>

#include <map>

using namespace nimbrelle;
using namespace nimbrelle::bench;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"});

class StandingClock final : public Clock {
public:
    Timestamp now() const override { return ::now; }
    void callAfter(std::chrono::milliseconds, std::function<void()>) override { }
};

/// One notebook on disk for each size, made at its first use. A third of its words is in rounds and none has
/// to leave the learning set; half of all are on the always-spell list.
struct Desk {
    explicit Desk(qsizetype count) : words(sampleWords(count, now))
    {
        for (qsizetype i = 0; i < count; i += 2) {
            words[i].spellPractice = true;
            words[i].lastSpelledAt = words[i].lastLookupAt;
        }
        AppConfig roomy;
        roomy.learningSlots = count;
        config.setConfig(roomy);
        reset();
    }

    static Desk &of(benchmark::State &state)
    {
        static std::map<int64_t, std::unique_ptr<Desk>> all;
        auto &desk = all[state.range(0)];
        if (!desk)
            desk = std::make_unique<Desk>(state.range(0));
        return *desk;
    }

    /// The notebook as on the morning of a day.
    void reset()
    {
        writeRecordFile(paths.words, words);
        QFile::remove(paths.reviewStats);
        store = std::make_unique<WordStore>(paths, clock, config, log);
    }

    QTemporaryDir directory;
    AppPaths paths{directory.path()};
    StandingClock clock;
    ConfigStore config{paths, clock};
    LearningLog log{paths, clock};
    QList<WordEntry> words;
    std::unique_ptr<WordStore> store;
};

// What every round of a day costs but the first, and each opening of the menu.
void buildSession(benchmark::State &state)
{
    WordStore &store = *Desk::of(state).store;
    store.buildSession(0);
    for (auto _ : state)
        benchmark::DoNotOptimize(store.buildSession(0));
}

// All waiting words compete, eight join, and the notebook is written.
void buildFirstSessionOfADay(benchmark::State &state)
{
    Desk &desk = Desk::of(state);
    for (auto _ : state) {
        state.PauseTiming();
        desk.reset();
        state.ResumeTiming();
        benchmark::DoNotOptimize(desk.store->buildSession(0));
    }
}

void save(benchmark::State &state)
{
    const Desk &desk = Desk::of(state);
    for (auto _ : state)
        writeRecordFile(desk.paths.words, desk.words);
}

void sessionCount(benchmark::State &state)
{
    Desk &desk = Desk::of(state);
    desk.reset();
    for (auto _ : state)
        benchmark::DoNotOptimize(desk.store->sessionCount(now));
}

void buildSpellingSession(benchmark::State &state)
{
    const WordStore &store = *Desk::of(state).store;
    for (auto _ : state)
        benchmark::DoNotOptimize(store.buildSpellingSession(10));
}

void budget(benchmark::State &state)
{
    for (auto _ : state)
        state.SetIterationTime(0.030);
}

BENCHMARK(buildSession)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(buildFirstSessionOfADay)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(save)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(sessionCount)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(buildSpellingSession)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(budget)->Iterations(1)->Unit(benchmark::kMillisecond)->UseManualTime()->Name("30 ms");

} // namespace

int main(int argc, char **argv)
{
    constexpr double nLogN = 10.0 * 4 / 3;
    const std::string limit = "30 ms/iterations:1/manual_time";
    return runWithRatios(argc, argv,
        {
            {"round from 10,000 words / from 1,000", "buildSession/10000", {"buildSession/1000"}, nLogN},
            {"spelling round from 10,000 words / from 1,000", "buildSpellingSession/10000",
                {"buildSpellingSession/1000"}, nLogN},
            {"round from 10,000 words / 30 ms", "buildSession/10000", {limit}, 1.0},
            {"first round of a day / 30 ms and the saving of its file",
                "buildFirstSessionOfADay/10000/real_time", {"save/10000/real_time", limit}, 1.0},
            {"spelling round from 10,000 words / 30 ms", "buildSpellingSession/10000", {limit}, 1.0},
        });
}
