#include "Ratios.h"
#include "SampleNotebook.h"
#include "coach/ActivityLog.h"
#include "coach/CoachFacts.h"
#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/RecordFile.h"
#include "notebook/WordStore.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace nimbrelle::bench;

namespace {

const Timestamp now = *timestampFromIso(std::string_view{"2026-03-01T08:30:05Z"});
constexpr qsizetype wordCount = 5000;

/// `count` events of two years, a twentieth of them in the last two weeks, about the words of the notebook.
QStringList sampleLog(qsizetype count)
{
    constexpr const char *kinds[][2]{{"review", "good"}, {"review", "again"}, {"spell", "补字母 good"},
        {"lookup", "forum.example.org"}, {"glance", nullptr}, {"save", "docs.example.org"}};
    QRandomGenerator random{42};
    QStringList lines;
    for (qsizetype i = 0; i < count; ++i) {
        const auto &[kind, detail] = kinds[random.bounded(6)];
        const int days = i % 20 == 0 ? 14 : 730;
        const LearningLog::Event event{now - std::chrono::seconds{random.bounded(days * 86400)},
            QString::fromLatin1(kind), u"headword%1"_s.arg(random.bounded(int(wordCount))),
            detail ? std::optional(QString::fromUtf8(detail)) : std::nullopt};
        lines.append(QString::fromUtf8(*encode(event, TextForm::line)));
    }
    return lines;
}

/// A learner on disk for each length of the log, made at its first use.
struct Learner {
    explicit Learner(qsizetype events) { log.replaceAll(sampleLog(events)); }

    static Learner &of(benchmark::State &state)
    {
        static std::map<int64_t, std::unique_ptr<Learner>> all;
        auto &learner = all[state.range(0)];
        if (!learner)
            learner = std::make_unique<Learner>(state.range(0));
        return *learner;
    }

    const AppPaths &prepared()
    {
        writeRecordFile(paths.words, sampleWords(wordCount, now));
        return paths;
    }

    QTemporaryDir directory;
    AppPaths paths{directory.path()};
    ConfigStore config{paths, SystemClock::shared()};
    LearningLog log{paths, SystemClock::shared()};
    WordStore words{prepared(), SystemClock::shared(), config, log};
    CoachFacts facts{words, config, log};
};

void buildFacts(benchmark::State &state)
{
    const Learner &learner = Learner::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(learner.facts.build(now));
}

void todayReview(benchmark::State &state)
{
    const Learner &learner = Learner::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(learner.facts.todayReview(now));
}

void decodeLog(benchmark::State &state)
{
    const Learner &learner = Learner::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(learner.facts.events());
}

void readLog(benchmark::State &state)
{
    const Learner &learner = Learner::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(learner.log.readLines());
}

void makeActivityLog(benchmark::State &state)
{
    const auto events = Learner::of(state).facts.events();
    for (auto _ : state)
        benchmark::DoNotOptimize(ActivityLog(events, now).recent().size());
}

BENCHMARK(buildFacts)->Arg(0)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(todayReview)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeLog)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(readLog)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(makeActivityLog)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    return runWithRatios(argc, argv,
        {
            {"record of 100,000 events / of 10,000", "buildFacts/100000", {"buildFacts/10000"}, 12.0},
            {"log of 100,000 events / of 10,000", "makeActivityLog/100000", {"makeActivityLog/10000"}, 12.0},
            {"log of 100,000 events / decoding of the log", "makeActivityLog/100000", {"decodeLog/100000"},
                0.5},
        });
}
